// SPDX-License-Identifier: MIT
#include "identity/CredentialsManager.hpp"

#include "identity/CredentialsArchive.hpp"
#include "identity/CredentialsManagerError.hpp"
#include "identity/SimpleKeychain.hpp"
#include "platform/FileKeychainStore.hpp"
#include "platform/Keychain.hpp"
#include "platform/KeychainLock.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/SyncWait.hpp"
#include "runtime/WhenAll.hpp"
#include "support/Environment.hpp"
#include "support/RotatingProvider.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;
using test::ScriptedAnswer;

Date fromNow(std::chrono::seconds seconds) {
  return std::chrono::system_clock::now() + seconds;
}

Credentials record(std::chrono::seconds life, std::optional<std::string> refreshToken = "refresh-0",
                   std::optional<std::string> scope = "openid") {
  return Credentials({.accessToken = "stored",
                      .tokenType = "Bearer",
                      .expiresIn = fromNow(life),
                      .refreshToken = std::move(refreshToken),
                      .idToken = "i",
                      .scope = std::move(scope)});
}

class CredentialsManagerTest : public testing::Test {
 protected:
  CredentialsManagerTest() {
    Keychain::setShared(Keychain(std::make_shared<FileKeychainStore>(folder_ / "keychain")));
  }

  /// The access token, or why there is none.
  std::string retrieve(std::optional<std::string> scope = {}, std::chrono::seconds minTTL = 0s) {
    try {
      return syncWait(manager_.credentials(std::move(scope), minTTL)).accessToken();
    } catch (CredentialsManagerError const& error) {
      return error.what();
    }
  }

  [[nodiscard]] std::optional<Credentials> stored() const {
    return CredentialsArchive::unarchive(keychain_->readEntry("credentials").value_or(""));
  }

  test::TemporaryFolder folder_;
  test::EnvironmentVariable data_{"XDG_DATA_HOME", folder_.path().string()};
  test::RotatingProvider provider_;
  std::shared_ptr<SimpleKeychain> keychain_ = std::make_shared<SimpleKeychain>("com.vek.test");
  CredentialsManager manager_{
      .storage = keychain_,
      .storeKey = "credentials",
      .authentication = {
          .clientId = "client",
          .url = provider_.url(),
          .session = HTTPClient::make({.trustedAuthority = provider_.authority.authority()})}};
};

constexpr char const* noCredentials = "No credentials were found in the store.";

TEST_F(CredentialsManagerTest, HandsOutWhatIsValidAndRenewsTheRest) {
  struct Case {
    char const* description;
    Credentials stored;
    std::optional<std::string> scope;
    std::chrono::seconds minTTL;
    std::string outcome;
    int renewals = 0;
  };
  for (auto const& [description, stored, scope, minTTL, outcome, renewals] : {
           Case{"some seconds left", record(5s), {}, 0s, "stored"},
           Case{"ended a second ago", record(-1s), {}, 0s, "access-1", 1},
           Case{"less left than asked for", record(50s), {}, 60s, "access-1", 1},
           Case{"as much left as asked for", record(70s), {}, 60s, "stored"},
           Case{"the same words", record(50s, "refresh-0", "b a"), "a  b", 0s, "stored"},
           Case{"another scope", record(50s), "openid more", 0s, "access-1", 1},
           Case{"a scope where none is known", record(50s, "refresh-0", {}), "openid", 0s,
                "access-1", 1},
           Case{"nothing to renew with",
                record(-1s, {}),
                {},
                0s,
                "The stored credentials instance does not contain a refresh token."},
           Case{"a refused renewal",
                record(-1s, "spent"),
                {},
                0s,
                "The credentials renewal failed. CAUSE: Revoked.",
                0},
       }) {
    SCOPED_TRACE(description);
    test::RotatingProvider provider;
    manager_.authentication.url = provider.url();
    manager_.authentication.session =
        HTTPClient::make({.trustedAuthority = provider.authority.authority()});
    ASSERT_TRUE(manager_.store(stored));
    EXPECT_EQ(retrieve(scope, minTTL), outcome);
    EXPECT_EQ(provider.renewals(), renewals);
    auto const after = this->stored();
    ASSERT_TRUE(after);
    EXPECT_EQ(after->accessToken(), renewals > 0 ? outcome : "stored") << "in the store";
    EXPECT_EQ(after->refreshToken(), renewals > 0 ? "refresh-1" : stored.refreshToken());
  }
}

TEST_F(CredentialsManagerTest, SendsWhatTheCallerAddsToARenewal) {
  provider_.server.answerWith(
      ScriptedAnswer::of(200, R"({"access_token":"a","token_type":"Bearer","expires_in":60})"));
  ASSERT_TRUE(manager_.store(record(-1s)));
  auto const renewed =
      syncWait(manager_.credentials("profile", 0s, {{"device", "d"}}, {{"X-Name", "v"}}));
  auto const sent = provider_.server.received().at(0);
  EXPECT_EQ(boost::json::parse(sent.body),
            boost::json::parse(R"({"refresh_token":"refresh-0","grant_type":"refresh_token",
                "client_id":"client","scope":"openid profile","device":"d"})"));
  EXPECT_THAT(sent.headers, testing::HasSubstr("X-Name: v\r\n"));
  EXPECT_EQ(renewed.refreshToken(), "refresh-0") << "kept where the answer has none";
  EXPECT_EQ(stored()->refreshToken(), "refresh-0");
  EXPECT_EQ(renewed.scope(), std::nullopt) << "the answer's fields";
}

TEST_F(CredentialsManagerTest, RenewedTokenThatEndsTooEarlyIsNotStored) {
  ASSERT_TRUE(manager_.store(record(-1s)));
  EXPECT_THAT(
      retrieve({}, 7'200s),
      testing::MatchesRegex(
          "The minTTL requested \\(7200s\\) is greater than the lifetime of the renewed access "
          "token \\(3(600|59[0-9])s\\). Request a lower minTTL or increase the 'Token Expiration' "
          "value in the settings page of your Auth0 API."));
  EXPECT_EQ(stored()->accessToken(), "stored");
}

TEST_F(CredentialsManagerTest, NoEntryAndADamagedOneAreNoCredentials) {
  EXPECT_EQ(retrieve(), noCredentials);
  ASSERT_TRUE(keychain_->writeEntry("\x01garbage", "credentials"));
  EXPECT_EQ(retrieve(), noCredentials);
  ASSERT_TRUE(manager_.store(record(60s)));
  EXPECT_EQ(retrieve(), "stored");
  ASSERT_TRUE(keychain_->removeEntry("credentials"));
  EXPECT_EQ(retrieve(), noCredentials);
}

TEST_F(CredentialsManagerTest, StoreThatFailsEndsARenewal) {
  ASSERT_TRUE(manager_.store(record(-1s)));
  auto const file = folder_ / "keychain/com.vek.test/.lock";
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
  EXPECT_EQ(retrieve(), "Storing the renewed credentials failed.");
  EXPECT_EQ(stored()->accessToken(), "stored");
  EXPECT_FALSE(manager_.store(record(60s)));
  std::filesystem::remove(file);
  EXPECT_EQ(retrieve(), "access-2") << "the old refresh token is still good";
}

TEST_F(CredentialsManagerTest, AThousandCallersCauseOneRenewal) {
  ASSERT_TRUE(manager_.store(record(-1s)));
  provider_.delay = 50ms;
  std::vector<Task<Credentials>> tasks;
  for (int i = 0; i < 1'000; ++i) tasks.push_back(manager_.credentials());
  for (auto const& each : syncWait(whenAll(std::move(tasks)))) {
    EXPECT_EQ(each.accessToken(), "access-1");
  }
  EXPECT_EQ(provider_.server.received().size(), 1U);
}

TEST_F(CredentialsManagerTest, CancelledCallerLeavesTheRenewalToOthers) {
  ASSERT_TRUE(manager_.store(record(-1s)));
  provider_.delay = 100ms;
  std::stop_source stop;
  std::jthread const stopper([&] {
    std::this_thread::sleep_for(30ms);
    stop.request_stop();
  });
  EXPECT_THROW(syncWait(withStop(stop.get_token(), manager_.credentials())), CancellationError);
  EXPECT_EQ(retrieve(), "access-1");
}

TEST_F(CredentialsManagerTest, FindsWhatAnotherProgramRenewedMeanwhile) {
  ASSERT_TRUE(manager_.store(record(-1s)));
  std::optional<KeychainLock> otherProgram;
  otherProgram.emplace("credentials", 1s);
  std::jthread const renewal([&] {
    std::this_thread::sleep_for(50ms);
    auto renewed = record(60s, "refresh-of-the-other");
    EXPECT_TRUE(manager_.store(renewed));
    otherProgram.reset();
  });
  EXPECT_EQ(retrieve(), "stored");
  EXPECT_EQ(provider_.server.received().size(), 0U);
}

TEST_F(CredentialsManagerTest, LogoutOrLoginDuringARenewalHasTheLastWord) {
  provider_.setMeanwhile([&] { EXPECT_TRUE(keychain_->removeEntry("credentials")); });
  ASSERT_TRUE(manager_.store(record(-1s)));
  EXPECT_EQ(retrieve(), noCredentials);
  EXPECT_FALSE(stored());

  provider_.setMeanwhile([&] { EXPECT_TRUE(manager_.store(record(60s, "of-another-login"))); });
  ASSERT_TRUE(manager_.store(record(-1s)));
  EXPECT_EQ(retrieve(), "stored");
  EXPECT_EQ(stored()->refreshToken(), "of-another-login");
  EXPECT_EQ(provider_.renewals(), 2);
}

TEST_F(CredentialsManagerTest, ProgramThatStoppedIsWaitedForOnceByAll) {
  ASSERT_TRUE(manager_.store(record(-1s)));
  KeychainLock const stopped("credentials", 1s);
  manager_.patience = 300ms;
  auto const begin = std::chrono::steady_clock::now();
  std::vector<Task<>> tasks;
  for (int i = 0; i < 30; ++i) {
    tasks.push_back([](CredentialsManager manager) -> Task<> {
      auto const outcome = co_await attempt(manager.credentials());
      EXPECT_THAT(ErrorObject(outcome.error()).localizedDescription(),
                  testing::StartsWith("The credentials renewal failed. CAUSE: "));
    }(manager_));
  }
  syncWait(whenAll(std::move(tasks)));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s) << "and not 9";
}

TEST(CredentialsArchive, KeepsAllFieldsAndReadsNothingElse) {
  Credentials::Fields const fields{.accessToken = "a \"quoted\" t\xc3\xb6ken",
                                   .tokenType = "Bearer",
                                   .expiresIn = fromNow(77s),
                                   .refreshToken = "r",
                                   .idToken = "i",
                                   .scope = "openid profile",
                                   .recoveryCode = "c"};
  auto const bytes = CredentialsArchive::archive(Credentials(fields));
  ASSERT_TRUE(bytes);
  auto const read = CredentialsArchive::unarchive(*bytes);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->accessToken(), fields.accessToken);
  EXPECT_EQ(read->tokenType(), fields.tokenType);
  EXPECT_EQ(read->expiresIn(), fields.expiresIn);
  EXPECT_EQ(read->refreshToken(), fields.refreshToken);
  EXPECT_EQ(read->idToken(), fields.idToken);
  EXPECT_EQ(read->scope(), fields.scope);
  EXPECT_EQ(read->recoveryCode(), fields.recoveryCode);

  auto const empty = CredentialsArchive::unarchive(R"({"class":"A0Credentials","version":1})");
  ASSERT_TRUE(empty);
  EXPECT_EQ(empty->accessToken() + empty->tokenType() + empty->idToken(), "");
  EXPECT_EQ(empty->refreshToken(), std::nullopt);
  EXPECT_LT(fromNow(0s) - empty->expiresIn(), 60s) << "the current time";

  std::string const end = R"(,"accessToken":"a","tokenType":"Bearer"})";
  for (std::string const& damaged :
       {std::string(), bytes->substr(1), bytes->substr(0, bytes->size() - 1), *bytes + "x",
        R"({"class":"Other","version":1)" + end, R"({"class":"A0Credentials","version":2)" + end,
        R"({"class":"A0Credentials")" + end,
        R"({"class":"A0Credentials","version":1,"expiresIn":"soon")" + end,
        R"({"class":"A0Credentials","version":1,"expiresIn":-9223372036854775808)" + end,
        R"({"class":"A0Credentials","version":1,"scope":["a"])" + end,
        R"({"class":"A0Credentials","version":1,"scope":)" + std::string(100'000, '[') + end,
        *bytes + std::string(CredentialsArchive::largestSize, ' ')}) {
    EXPECT_FALSE(CredentialsArchive::unarchive(damaged)) << damaged.substr(0, 200);
  }
  for (std::string const& token : {std::string("\xff"), std::string(1U << 20U, 't')}) {
    EXPECT_FALSE(CredentialsArchive::archive(
        Credentials({.accessToken = token, .tokenType = "Bearer", .expiresIn = {}})));
  }
}

}  // namespace
}  // namespace vek
