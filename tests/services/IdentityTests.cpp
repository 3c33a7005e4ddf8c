// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/json/parse.hpp>
#include <thread>

#include "platform/URLComponents.hpp"
#include "records/Base64URL.hpp"
#include "support/BackendClient.hpp"
#include "support/IdentityClient.hpp"

namespace vek::test {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

boost::json::object claimsOf(std::string const& token) {
  auto const begin = token.find('.') + 1;
  auto const part = Base64URL::decode(token.substr(begin, token.rfind('.') - begin));
  return boost::json::parse(part.value()).as_object();
}

std::string errorOf(Answer const& answer) {
  return std::string(boost::json::parse(answer.body).at("error").as_string());
}

class Identity : public testing::Test {
 protected:
  static void SetUpTestSuite() { services_ = std::make_unique<LocalServices>(); }
  static void TearDownTestSuite() { services_.reset(); }

  /// The backend's answer to an access token.
  static long statusFor(std::string const& accessToken) {
    return BackendClient(services_->url(), services_->authority(), accessToken)
        .get("customers")
        .status;
  }

  inline static std::unique_ptr<LocalServices> services_;
  IdentityClient client{*services_};
};

TEST_F(Identity, ASignInEndsInTokensThatSayWhoItIsAndOpenTheBackend) {
  auto const account = services_->account();
  auto const page = client.get(client.authorizeURL());
  auto const url = client.authorizeURL({{"nonce", "a nonce"}});
  auto const answer =
      client.submit(url, page, {{"name", account.name}, {"password", account.password}});
  EXPECT_EQ(answer.status, 303);
  auto const location = answer.header("location");
  EXPECT_THAT(location, StartsWith(std::string(IdentityClient::redirectURL) + "?code="));
  EXPECT_EQ(queryValue(location, "state"), "the%20state");

  auto const tokens = client.exchange(queryValue(location, "code")).as<IssuedTokens>();
  EXPECT_EQ(tokens.tokenType, "Bearer");
  EXPECT_EQ(tokens.expiresIn, 3600);
  EXPECT_EQ(tokens.scope, "openid profile email");
  EXPECT_EQ(statusFor(tokens.accessToken), 200);
  EXPECT_EQ(statusFor(tokens.idToken), 401);

  auto const id = claimsOf(tokens.idToken);
  auto const access = claimsOf(tokens.accessToken);
  EXPECT_EQ(id.at("iss").as_string(), services_->url() + "/");
  EXPECT_EQ(id.at("aud").as_string(), IdentityClient::client);
  EXPECT_EQ(id.at("nonce").as_string(), "a nonce");
  EXPECT_EQ(id.at("name").as_string(), account.name);
  EXPECT_THAT(std::string(id.at("email").as_string()), StartsWith(account.name + "@"));
  EXPECT_EQ(access.at("sub"), id.at("sub"));
  EXPECT_EQ(access.at("aud").as_string(), IdentityClient::audience);
  EXPECT_EQ(access.at("exp").as_int64() - access.at("iat").as_int64(), 3600);
}

TEST_F(Identity, AFormMayTakeThePlaceOfJSONAndLessScopeSaysLess) {
  auto const account = services_->account();
  auto const url = client.authorizeURL({{"scope", "openid offline_access"}});
  auto const answer =
      client.submit(url, client.get(url), {{"name", account.name}, {"password", account.password}});
  WebClient web(services_->authority());
  auto const tokens =
      web.request("POST", services_->url() + "/oauth/token",
                  "grant_type=authorization_code&client_id=vek-desktop&code=" +
                      queryValue(answer.header("location"), "code") +
                      "&redirect_uri=" + percentEncoded(IdentityClient::redirectURL) +
                      "&code_verifier=dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk")
          .as<IssuedTokens>();
  EXPECT_EQ(tokens.scope, "openid");
  EXPECT_FALSE(claimsOf(tokens.idToken).contains("email"));
  EXPECT_THAT(tokens.refreshToken, Not(IsEmpty()));
}

TEST_F(Identity, ARequestOfNobodyKnownIsSentNowhere) {
  IdentityClient::Parameters const cases[] = {
      {{"client_id", ""}},
      {{"client_id", "another"}},
      {{"redirect_uri", ""}},
      {{"redirect_uri", "https://evil.example/"}},
      {{"redirect_uri", std::string(IdentityClient::redirectURL) + "/more"}},
      {{"redirect_uri", "com.vek.app://localhost.evil.example/macos/com.vek.app/callback"}},
      {{"redirect_uri", "COM.VEK.APP://localhost/macos/com.vek.app/callback"}},
  };
  for (auto const& replaced : cases) {
    SCOPED_TRACE(testing::PrintToString(replaced));
    auto const url = client.authorizeURL(replaced);
    for (auto const& answer : {client.get(url), client.submit(url, {}, {{"action", "cancel"}})}) {
      EXPECT_EQ(answer.status, 400);
      EXPECT_EQ(answer.header("location"), "");
      EXPECT_THAT(answer.body, HasSubstr("<h1>This sign-in cannot go on</h1>"));
    }
  }
  auto const twice = client.authorizeURL() + "&redirect_uri=https://evil.example/";
  EXPECT_EQ(client.get(twice).status, 400);
}

TEST_F(Identity, WhatElseIsWrongWithARequestIsToldToTheProgram) {
  struct Case {
    IdentityClient::Parameters replaced;
    char const* error;
  };
  Case const cases[] = {
      {{{"response_type", ""}}, "invalid_request"},
      {{{"response_type", "token"}}, "unsupported_response_type"},
      {{{"code_challenge", ""}}, "invalid_request"},
      {{{"code_challenge", "short"}}, "invalid_request"},
      {{{"code_challenge_method", ""}}, "invalid_request"},
      {{{"code_challenge_method", "plain"}}, "invalid_request"},
      {{{"scope", "profile"}}, "invalid_scope"},
      {{{"audience", ""}}, "access_denied"},
      {{{"audience", "https://other.example"}}, "access_denied"},
      {{{"organization", "org_1"}}, "invalid_request"},
  };
  for (auto const& [replaced, error] : cases) {
    SCOPED_TRACE(testing::PrintToString(replaced));
    auto const answer = client.get(client.authorizeURL(replaced));
    EXPECT_EQ(answer.status, 303);
    auto const location = answer.header("location");
    EXPECT_THAT(location, StartsWith(IdentityClient::redirectURL));
    EXPECT_EQ(queryValue(location, "error"), error);
    EXPECT_THAT(queryValue(location, "error_description"), Not(IsEmpty()));
    EXPECT_EQ(queryValue(location, "state"), "the%20state");
  }
  auto const repeated = client.get(client.authorizeURL() + "&state=other");
  EXPECT_EQ(queryValue(repeated.header("location"), "error"), "invalid_request");
}

TEST_F(Identity, ThePageIsPlainAccessibleAndLocked) {
  auto const page = client.get(client.authorizeURL());
  EXPECT_EQ(page.status, 200);
  EXPECT_EQ(page.header("content-type"), "text/html; charset=utf-8");
  EXPECT_EQ(page.header("cache-control"), "no-store");
  EXPECT_THAT(page.header("content-security-policy"),
              AllOf(HasSubstr("default-src 'none'"), HasSubstr("frame-ancestors 'none'"),
                    Not(HasSubstr("script-src")), Not(HasSubstr("unsafe"))));
  EXPECT_THAT(page.header("set-cookie"),
              AllOf(StartsWith("__Host-"), HasSubstr("; Secure"), HasSubstr("; HttpOnly"),
                    HasSubstr("; SameSite=Strict")));
  EXPECT_THAT(page.body,
              AllOf(HasSubstr("<html lang=\"en\">"), HasSubstr("<label for=\"name\">"),
                    HasSubstr("autocomplete=\"current-password\""), Not(HasSubstr("<script")),
                    Not(HasSubstr("http://")), Not(HasSubstr("aria-describedby"))));

  auto const hostile = client.submit("\"><script>alert(1)</script>", "x");
  EXPECT_THAT(hostile.body, AllOf(HasSubstr("&quot;&gt;&lt;script&gt;"), Not(HasSubstr("<script")),
                                  HasSubstr("aria-describedby=\"problem\""),
                                  HasSubstr("role=\"alert\">Wrong name or password.")));
  EXPECT_THAT(client.submit("", "x").body, HasSubstr("Enter your name."));
  EXPECT_THAT(client.submit("x", "").body, HasSubstr("Enter your password."));
}

TEST_F(Identity, AFormOfAnotherBrowserIsRefused) {
  auto const account = services_->account();
  auto const url = client.authorizeURL();
  IdentityClient::Parameters const entries = {{"name", account.name},
                                              {"password", account.password}};
  IdentityClient stranger(*services_);
  auto const foreignPage = stranger.get(url);
  auto const withoutCookie = client.submit(url, foreignPage, entries);
  auto const withOtherCookie = client.submit(url, foreignPage, entries);
  auto const withoutGuard = client.submit(url, {}, entries);
  for (auto const& answer : {withoutCookie, withOtherCookie, withoutGuard}) {
    EXPECT_EQ(answer.status, 403);
    EXPECT_EQ(answer.header("location"), "");
  }
  EXPECT_EQ(client.submit(url, withoutGuard, entries).status, 303);
}

TEST_F(Identity, ACancelledSignInIsToldToTheProgram) {
  auto const url = client.authorizeURL();
  auto const answer = client.submit(url, client.get(url), {{"action", "cancel"}});
  EXPECT_EQ(answer.status, 303);
  EXPECT_EQ(queryValue(answer.header("location"), "error"), "access_denied");
  EXPECT_EQ(queryValue(answer.header("location"), "state"), "the%20state");
}

TEST_F(Identity, GuessingSlowsDownForOneAccountAndNotForAnother) {
  LocalServices services;
  IdentityClient guesser(services);
  auto const account = services.account();
  for (int attempt = 0; attempt < 5; ++attempt) {
    auto const answer = guesser.submit(account.name, "a guess");
    EXPECT_EQ(answer.status, 400);
    EXPECT_THAT(answer.body, HasSubstr("Wrong name or password."));
  }
  auto const slowed = guesser.submit(account.name, account.password);
  EXPECT_EQ(slowed.status, 429);
  EXPECT_EQ(slowed.header("retry-after"), "1");
  EXPECT_THAT(slowed.body, HasSubstr("Too many attempts. Try again in 1 second."));
  EXPECT_EQ(guesser.submit("somebody else", "a guess").status, 400);

  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_EQ(guesser.submit(account.name, account.password).status, 303);
  EXPECT_EQ(guesser.submit(account.name, "a guess").status, 400) << "the count begins anew";
}

TEST_F(Identity, GuessingSlowsDownForAnAddressWhateverTheNames) {
  LocalServices services;
  IdentityClient guesser(services);
  for (auto const& [name, password] : {std::pair(std::string(257, 'n'), std::string("a guess")),
                                       std::pair(std::string("a name"), std::string(257, 'p'))}) {
    auto const answer = guesser.submit(name, password);
    EXPECT_EQ(answer.status, 400);
    EXPECT_THAT(answer.body, HasSubstr("Wrong name or password."));
  }
  // On a slow machine the first short waits are over before the next attempt.
  int failures = 0;
  long status = 400;
  while (status == 400 && failures < 30) {
    status = guesser.submit(std::to_string(failures), "a guess").status;
    if (status == 400) ++failures;
  }
  EXPECT_EQ(status, 429);
  EXPECT_GE(failures, 20);
}

TEST_F(Identity, ACodeIsOnlyGoodForWhomItWasIssuedTo) {
  struct Case {
    IdentityClient::Parameters replaced;
    long status;
    char const* error;
  };
  Case const cases[] = {
      {{{"code_verifier", std::string(43, 'a')}}, 403, "invalid_grant"},
      {{{"redirect_uri", "https://evil.example/"}}, 403, "invalid_grant"},
      {{{"client_id", "another"}}, 401, "invalid_client"},
      {{{"code_verifier", ""}}, 400, "invalid_request"},
      {{{"code", "unknown"}}, 403, "invalid_grant"},
      {{{"grant_type", "password"}}, 403, "unsupported_grant_type"},
      {{{"grant_type", ""}}, 400, "invalid_request"},
  };
  for (auto const& [replaced, status, error] : cases) {
    SCOPED_TRACE(testing::PrintToString(replaced));
    auto const answer = client.exchange(client.code(), replaced);
    EXPECT_EQ(answer.status, status);
    EXPECT_EQ(errorOf(answer), error);
  }
  auto const code = client.code();
  EXPECT_EQ(client.exchange(code, {{"code_verifier", std::string(43, 'a')}}).status, 403);
  EXPECT_EQ(client.exchange(code).status, 403) << "the one attempt was made";

  WebClient web(services_->authority());
  auto const url = services_->url() + "/oauth/token";
  EXPECT_EQ(errorOf(web.request("POST", url, "{", {"Content-Type: application/json"})),
            "invalid_request");
  EXPECT_EQ(errorOf(web.request("POST", url, "[]", {"Content-Type: application/json"})),
            "invalid_request");
  EXPECT_EQ(errorOf(web.request("POST", url, "x", {"Content-Type: text/plain"})),
            "invalid_request");
  EXPECT_EQ(errorOf(web.request("POST", url, "code=1&code=2")), "invalid_request");
  EXPECT_EQ(web.request("GET", url).header("allow"), "POST");
}

TEST_F(Identity, ASecondUseOfACodeTakesBackWhatItBrought) {
  auto const code = client.code();
  auto const tokens = client.exchange(code).as<IssuedTokens>();
  EXPECT_EQ(statusFor(tokens.accessToken), 200);
  EXPECT_EQ(client.exchange(code).status, 403);
  EXPECT_EQ(statusFor(tokens.accessToken), 401);
  EXPECT_EQ(client.renew(tokens.refreshToken).status, 403);
}

TEST_F(Identity, ARefreshTokenIsGoodUntilItsSuccessorIsUsed) {
  auto const first = client.signIn();
  auto const lost = client.renew(first.refreshToken).as<IssuedTokens>();
  // The answer did not arrive, so the same token is used again.
  auto const second = client.renew(first.refreshToken).as<IssuedTokens>();
  auto const third = client.renew(second.refreshToken).as<IssuedTokens>();
  EXPECT_EQ(statusFor(third.accessToken), 200);
  EXPECT_EQ(claimsOf(third.idToken).at("auth_time"), claimsOf(first.idToken).at("auth_time"));

  // Somebody else has read the lost answer.
  EXPECT_EQ(errorOf(client.renew(lost.refreshToken)), "invalid_grant");
  EXPECT_EQ(client.renew(third.refreshToken).status, 403) << "the whole family is revoked";
  EXPECT_EQ(statusFor(third.accessToken), 401);
}

TEST_F(Identity, AReplacedRefreshTokenRevokesItsFamilyAndNoOther) {
  auto const other = client.signIn();
  auto const first = client.signIn();
  auto const second = client.renew(first.refreshToken).as<IssuedTokens>();
  auto const third = client.renew(second.refreshToken).as<IssuedTokens>();
  EXPECT_EQ(client.renew(first.refreshToken).status, 403);
  EXPECT_EQ(client.renew(third.refreshToken).status, 403);
  EXPECT_EQ(client.renew(other.refreshToken).status, 200);
}

TEST_F(Identity, ARenewalMayAskForLessAndNotForMore) {
  auto const tokens = client.signIn();
  IdentityClient::Parameters request = {{"grant_type", "refresh_token"},
                                        {"client_id", IdentityClient::client},
                                        {"refresh_token", tokens.refreshToken},
                                        {"scope", "openid"}};
  EXPECT_EQ(client.token(request).as<IssuedTokens>().scope, "openid");
  request["scope"] = "openid admin";
  EXPECT_EQ(errorOf(client.token(request)), "invalid_scope");
}

TEST(IdentityLifecycle, AnAccessTokenEndsAndARenewalBringsTheNext) {
  LocalServices services({"--access-token-lifetime", "2"});
  IdentityClient client(services);
  auto const tokens = client.signIn();
  BackendClient backend(services.url(), services.authority(), tokens.accessToken);
  EXPECT_EQ(backend.get("customers").status, 200);
  std::this_thread::sleep_for(std::chrono::milliseconds(2100));
  EXPECT_EQ(backend.get("customers").status, 401);
  backend.token = client.renew(tokens.refreshToken).as<IssuedTokens>().accessToken;
  EXPECT_EQ(backend.get("customers").status, 200);
}

TEST(IdentityLifecycle, SignInsOutliveRestartsAndKeysThatWereReplaced) {
  LocalServices services({"--key-lifetime", "1"});
  IdentityClient client(services);
  auto const tokens = client.signIn();
  EXPECT_THAT(services.output(), HasSubstr(services.account().password));
  services.kill();
  services.start();
  EXPECT_THAT(services.output(), Not(HasSubstr(services.account().password)));
  BackendClient backend(services.url(), services.authority(), tokens.accessToken);
  EXPECT_EQ(backend.get("customers").status, 200);

  auto const keyCount = [&] {
    auto const set = client.get(services.url() + "/.well-known/jwks.json");
    return boost::json::parse(set.body).at("keys").as_array().size();
  };
  auto const before = keyCount();
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  backend.token = client.renew(tokens.refreshToken).as<IssuedTokens>().accessToken;
  EXPECT_EQ(keyCount(), before + 1);
  EXPECT_EQ(backend.get("customers").status, 200);
  backend.token = tokens.accessToken;
  EXPECT_EQ(backend.get("customers").status, 200);
}

TEST(IdentityLifecycle, NothingSecretIsLogged) {
  LocalServices services;
  IdentityClient client(services);
  auto const account = services.account();
  client.submit(account.name, "a typed secret");
  client.submit("a typed secret", "x");
  auto const code = client.code();
  auto const tokens = client.exchange(code).as<IssuedTokens>();
  client.exchange(code);
  client.renew(tokens.refreshToken);
  services.stop();
  for (auto const& secret : {account.password, std::string("typed secret"), code,
                             tokens.accessToken, tokens.refreshToken, tokens.idToken}) {
    EXPECT_THAT(services.log(), Not(HasSubstr(secret)));
  }
}

}  // namespace

}  // namespace vek::test
