// SPDX-License-Identifier: MIT
#include "platform/UpdateFeed.hpp"

#include <fmt/format.h>

#include <atomic>

#include "platform/Files.hpp"
#include "platform/UpdateError.hpp"
#include "runtime/SyncWait.hpp"
#include "support/HTTPSTestServer.hpp"
#include "support/UpdatePublisher.hpp"

namespace vek {
namespace {

using test::HTTPSTestServer;
using test::ReceivedRequest;
using test::ScriptedAnswer;
using enum UpdateError::Code;

constexpr auto list =
    R"({"product": "com.vek.app", "serial": 7, "expires": 9000000000, "version": "2.0.1",
  "displayVersion": "2.0 \u201cNew\u201d", "notes": "Faster.", "link": "https://vek.test/get"})";

/// A publisher, and a server that gives out a list with a signature.
class UpdateFeedTest : public testing::Test {
 protected:
  void publish(ScriptedAnswer answer, std::string signature) {
    answer_ = std::move(answer);
    signature_ = std::move(signature);
  }
  void publish(std::string const& text) {
    publish(ScriptedAnswer::of(200, text), publisher_.sign(text));
  }

  [[nodiscard]] UpdateFeed feed(std::string url) const {
    auto const http = HTTPClient::make({.trustedAuthority = authority_.authority()});
    return {http, std::move(url), publisher_.publicKey()};
  }
  [[nodiscard]] UpdateFeed feed() const { return feed(server_.url() + "/feed.json"); }

  static std::optional<UpdateError::Code> failure(UpdateFeed const& feed) {
    try {
      syncWait(feed.latest());
      return std::nullopt;
    } catch (UpdateError const& error) {
      return error.code();
    }
  }

  test::TestAuthority const authority_;
  test::UpdatePublisher const publisher_;
  ScriptedAnswer answer_;
  std::string signature_;
  /// How many signatures are still those of another list.
  std::atomic<int> lateSignatures_ = 0;
  HTTPSTestServer const server_{authority_, [this](ReceivedRequest const& request) {
                                  if (request.line != "GET /feed.json.signature") return answer_;
                                  bool const isLate = lateSignatures_-- > 0;
                                  return ScriptedAnswer::of(200, isLate ? "" : signature_);
                                }};
};

TEST_F(UpdateFeedTest, GivesWhatTheMakerPublished) {
  publish(list);
  auto const release = syncWait(feed().latest());
  EXPECT_EQ(release.serial, 7U);
  EXPECT_THAT(release.publisher, testing::MatchesRegex("[0-9a-f]{16}"));
  EXPECT_EQ(release.item.version.text(), "2.0.1");
  EXPECT_EQ(release.item.displayVersionString, "2.0 \u201cNew\u201d");
  EXPECT_EQ(release.item.notes, "Faster.");
  EXPECT_EQ(release.item.link, "https://vek.test/get");

  publish(
      R"({"product":"com.vek.app","serial":0,"expires":9000000000,"version":"3","link":"https://vek.test"})");
  auto const least = syncWait(feed().latest());
  EXPECT_EQ(least.item.displayVersionString, "3");
  EXPECT_EQ(least.item.notes, "");
}

TEST_F(UpdateFeedTest, BelievesTheMakerAlone) {
  auto const good = publisher_.sign(list);
  auto changed = good;
  changed[10] = static_cast<char>(changed[10] ^ 1);
  for (auto const& signature : {test::UpdatePublisher().sign(list), publisher_.sign("another list"),
                                changed, good + "\n", good.substr(1), std::string()}) {
    publish(ScriptedAnswer::of(200, list), signature);
    EXPECT_EQ(failure(feed()), badSignature);
  }
  // What is not signed is not read, however broken it is.
  publish(ScriptedAnswer::of(200, "{"), good);
  EXPECT_EQ(failure(feed()), badSignature);
}

TEST_F(UpdateFeedTest, AListThatIsBeingReplacedIsFetchedOnceMore) {
  publish(list);
  lateSignatures_ = 1;
  EXPECT_EQ(syncWait(feed().latest()).serial, 7U);
  lateSignatures_ = 2;
  EXPECT_EQ(failure(feed()), badSignature);
}

TEST_F(UpdateFeedTest, AListOfLongAgoIsRefused) {
  auto const expiringIn = [](std::chrono::seconds left) {
    auto const expires = std::chrono::system_clock::now().time_since_epoch() + left;
    return fmt::format(
        R"({{"product":"com.vek.app","serial":9,"version":"3","link":"https://vek.test",)"
        R"("expires":{}}})",
        std::chrono::floor<std::chrono::seconds>(expires).count());
  };
  publish(expiringIn(std::chrono::hours(1)));
  EXPECT_EQ(failure(feed()), std::nullopt);
  publish(expiringIn(-std::chrono::seconds(1)));
  EXPECT_EQ(failure(feed()), outdated);
}

TEST(UpdateFeed, ASignedListThatSaysNothingIsRefusedWithTheReason) {
  auto const of = [](std::string_view serial, std::string_view version, std::string_view link) {
    return fmt::format(R"({{"product":"com.vek.app","serial":{},"version":{},"link":{}}})", serial,
                       version, link);
  };
  constexpr auto link = R"("https://vek.test")";
  for (auto const& [text, reason] : std::vector<std::pair<std::string, std::string>>{
           {"<html>", "not JSON"},
           {"[]", "no JSON object"},
           {"{}", "product is not a text"},
           {R"({"product":"com.vek.other"})", "another product"},
           {of("1", "2", link), "version is not a text"},
           {of("1", R"("two")", link), "version is no version"},
           {of("1", R"("2")", R"("http://vek.test")"), "link is no https"},
           {of("1", R"("2")", R"("file:///etc/passwd")"), "link is no https"},
           {of("1", R"("2")", R"("https://vek.test@evil.test")"), "link is no https"},
           {of("1", R"("2")", '"' + ("https://vek.test/" + std::string(2100, 'a')) + '"'),
            "too long"},
           {of("-1", R"("2")", link), "serial is not"},
           {of("1.5", R"("2")", link), "serial is not"},
           {of("1", R"("2")", link), "expires is not"},
           {std::string(100, '['), "not JSON"},
       }) {
    EXPECT_THAT([&] { (void)UpdateFeed::parse(text); },
                testing::ThrowsMessage<UpdateError>(testing::HasSubstr(reason)));
  }
}

TEST_F(UpdateFeedTest, AnswersThatAreNoListAreToldApart) {
  auto const huge = '"' + std::string(std::size_t{300} << 10U, 'x') + '"';
  publish(huge);
  EXPECT_EQ(failure(feed()), unreachable);
  publish(list);
  signature_ = std::string(1000, 'x');
  EXPECT_EQ(failure(feed()), unreachable);
  publish(ScriptedAnswer::of(404, "none"), publisher_.sign("none"));
  EXPECT_EQ(failure(feed()), refused);
  publish(ScriptedAnswer::of(302, "", "Location: https://localhost:1/\r\n"), publisher_.sign(""));
  EXPECT_EQ(failure(feed()), refused);
  publish(ScriptedAnswer::cutShort("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n{}"), "");
  EXPECT_EQ(failure(feed()), unreachable);
  EXPECT_EQ(failure(feed("https://localhost:1/feed.json")), unreachable);
  EXPECT_EQ(failure(feed(server_.urlByAddress() + "/feed.json")), unreachable);
}

TEST_F(UpdateFeedTest, AnInstallationThatCannotKnowSaysWhy) {
  publish(list);
  EXPECT_EQ(failure(feed("")), noFeed);
  EXPECT_EQ(failure(feed("http://localhost/feed.json")), insecureFeed);
  auto const http = HTTPClient::make({.trustedAuthority = authority_.authority()});
  test::TemporaryFolder const folder;
  replaceFile(folder / "no-key.pem", "-----BEGIN PUBLIC KEY-----\n");
  for (auto const& key :
       {folder / "absent", folder / "no-key.pem", authority_.key(), folder.path()}) {
    EXPECT_EQ(failure(UpdateFeed(http, server_.url() + "/feed.json", key)), noKey) << key;
  }
}

}  // namespace
}  // namespace vek
