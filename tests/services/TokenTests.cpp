// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

#include "records/Base64URL.hpp"
#include "records/JSON.hpp"
#include "services/identity/AttemptLimiter.hpp"
#include "services/identity/TokenEndpoint.hpp"
#include "services/support/Secret.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TokenSigner.hpp"

namespace vek::test {

namespace {

using namespace services;
using std::chrono::seconds;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

constexpr seconds hour = std::chrono::hours(1);
constexpr seconds day = std::chrono::days(1);

/// The provider without its web server, at whatever time a test says.
class TokenTest : public testing::Test {
 protected:
  TokenTest() {
    store.addAccount({.subject = "subject", .name = "name", .email = "", .user = UserID(7)}, {});
  }

  /// What a code brings that was issued `age` ago.
  Response exchange(seconds age) {
    auto const code = randomToken();
    AuthorizationRequest const request{.client = configuration.client,
                                       .redirectURL = configuration.redirectURL,
                                       .challenge = Base64URL::encode(sha256("verifier")),
                                       .scope = "openid",
                                       .nonce = {},
                                       .state = {}};
    store.addCode(tokenHash(code), store.login("name")->accountKey, request, now);
    return post({{"grant_type", "authorization_code"},
                 {"code", code},
                 {"code_verifier", "verifier"},
                 {"redirect_uri", configuration.redirectURL}},
                now + age);
  }

  Response post(std::map<std::string, std::string> parameters, Date when) {
    parameters["client_id"] = configuration.client;
    return endpoint.answer(Request{.method = "POST",
                                   .path = "/oauth/token",
                                   .query = {},
                                   .headers = {{"content-type", "application/json"}},
                                   .body = json::encode(parameters),
                                   .peer = {}},
                           when);
  }

  std::string issued(std::string const& key) {
    return boost::json::parse(exchange(seconds(0)).body).at(key).as_string().c_str();
  }

  TemporaryFolder folder;
  IdentityConfiguration configuration = IdentityConfiguration::onPort(8443, "https://api.vek.test");
  Date now = std::chrono::floor<seconds>(std::chrono::system_clock::now());
  IdentityStore store{folder / "identity.sqlite", configuration.idleLifetime};
  SigningKeys keys{store, {.key = day, .token = hour}, now};
  Tokens tokens{configuration, store, keys};
  TokenEndpoint endpoint{configuration, store, tokens};
};

TEST_F(TokenTest, ACodeHoldsForAMinuteAndASignInForHalfAYearOfRest) {
  EXPECT_EQ(exchange(seconds(60)).status, 200);
  EXPECT_EQ(exchange(seconds(61)).status, 403);

  auto const renewedAt = [&](std::string const& token, Date when) {
    return post({{"grant_type", "refresh_token"}, {"refresh_token", token}}, when).status;
  };
  auto const token = issued("refresh_token");
  EXPECT_EQ(renewedAt(token, now + 180 * day), 200);
  EXPECT_EQ(renewedAt(token, now + 361 * day), 403);
}

TEST_F(TokenTest, OnlyAnUnendedTokenOfThisIssuerForThisAudienceOpensAnything) {
  auto const good = issued("access_token");
  EXPECT_EQ(tokens.user(good, now + hour - seconds(1)), UserID(7));
  EXPECT_EQ(tokens.user(good, now + hour), std::nullopt);

  auto const last = good.rfind('.');
  auto const text = good.substr(0, last);
  auto const claims = text.substr(text.find('.') + 1);
  auto const withHeader = [&](std::string const& header) {
    return Base64URL::encode(header) + '.' + claims;
  };
  auto flipped = good;
  flipped[last + 10] = flipped[last + 10] == 'A' ? 'B' : 'A';
  auto const stored = store.signingKeys().back();
  TokenSigner const signer(stored.pem);
  auto const header = [&](std::string const& algorithm, std::string const& more = "") {
    return R"({"alg":")" + algorithm + R"(","kid":")" + stored.id + "\"" + more + "}";
  };
  auto const body = Base64URL::decode(claims).value();
  auto const keyed = withHeader(header("HS256"));
  auto object = *keys.verified(good);
  auto const resigned = [&](std::string_view claim, boost::json::value value) {
    auto changed = object;
    value.is_null() ? static_cast<void>(changed.erase(claim))
                    : static_cast<void>(changed[claim] = std::move(value));
    return keys.sign(changed, now);
  };
  IdentityStore otherStore(folder / "other.sqlite", day);
  SigningKeys foreign(otherStore, {.key = day, .token = hour}, now);

  EXPECT_EQ(tokens.user(resigned("extra", 1), now), UserID(7));
  EXPECT_EQ(tokens.user(signer.token(header("RS256"), body), now), UserID(7));
  std::string const refused[] = {
      "",
      "..",
      "a.b.c",
      good + ".",
      good + "=",
      text,
      text + ".",
      flipped,
      withHeader(header("none")) + '.',
      withHeader(header("none")) + good.substr(last),
      keyed + '.' + Base64URL::encode(hmac(keys.keySet(), keyed)),
      keyed + '.' + Base64URL::encode(hmac(signer.publicPEM(), keyed)),
      signer.token(header("HS256"), body),
      signer.token(R"({"alg":"RS256"})", body),
      signer.token(R"({"alg":"RS256","kid":"unknown"})", body),
      signer.token(header("RS256", R"(,"alg":"RS256")"), body),
      signer.token(header("RS256"), R"({"sub":"another",)" + body.substr(1)),
      foreign.sign(object, now),
      resigned("iss", "https://localhost:8444/"),
      resigned("aud", "vek-desktop"),
      resigned("aud", nullptr),
      resigned("exp", nullptr),
      resigned("exp", "9999999999"),
      resigned("exp", 1e300),
      resigned("sid", "unknown"),
      resigned("sid", 7),
      std::string(100'000, 'a') + '.' + std::string(100'000, '.') + '.',
  };
  for (auto const& token : refused) {
    EXPECT_EQ(tokens.user(token, now), std::nullopt) << token.substr(0, 500);
  }
}

TEST_F(TokenTest, AnOldKeyVerifiesForAsLongAsItsTokensLive) {
  auto const keyCount = [](SigningKeys const& of) {
    return boost::json::parse(of.keySet()).at("keys").as_array().size();
  };
  auto const early = keys.sign({{"n", 1}}, now + day - seconds(1));
  EXPECT_EQ(keyCount(keys), 1);
  auto const late = keys.sign({{"n", 2}}, now + day);
  EXPECT_EQ(keyCount(keys), 2);
  EXPECT_TRUE(keys.verified(early) && keys.verified(late));
  EXPECT_THAT(store.signingKeys(), SizeIs(2));

  SigningKeys restarted(store, {.key = day, .token = hour}, now + day + hour);
  EXPECT_TRUE(restarted.verified(early) && restarted.verified(late));
  auto const last = restarted.sign({{"n", 3}}, now + 2 * day);
  EXPECT_EQ(keyCount(restarted), 2);
  EXPECT_FALSE(restarted.verified(early));
  EXPECT_TRUE(restarted.verified(late) && restarted.verified(last));
  EXPECT_THAT(keys.keySet(), Not(HasSubstr("\"d\"")));
}

TEST(AttemptLimiter, LetsEachFurtherFailureWaitTwiceAsLong) {
  AttemptLimiter limiter(3);
  AttemptLimiter::Time now;
  auto const fail = [&] {
    limiter.failed("key", now);
    return limiter.wait("key", now).count();
  };
  std::vector<long> waits;
  for (int i = 0; i < 12; ++i) waits.push_back(fail());
  EXPECT_THAT(waits, testing::ElementsAre(0, 0, 1, 2, 4, 8, 16, 32, 64, 128, 256, 300));
  EXPECT_EQ(limiter.wait("key", now + seconds(299)), seconds(1));
  EXPECT_EQ(limiter.wait("key", now + seconds(300)), seconds(0));
  EXPECT_EQ(limiter.wait("another", now), seconds(0));

  now += hour + seconds(1);
  EXPECT_EQ(fail(), 0) << "an hour without a failure is forgiven";
  limiter.failed("key", now);
  limiter.failed("key", now);
  limiter.succeeded("key");
  EXPECT_EQ(fail(), 0);
}

}  // namespace

}  // namespace vek::test
