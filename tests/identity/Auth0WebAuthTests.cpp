// SPDX-License-Identifier: MIT
#include "identity/Auth0WebAuth.hpp"

#include <thread>

#include "records/Base64URL.hpp"
#include "runtime/SyncWait.hpp"
#include "runtime/ThreadPool.hpp"
#include "support/ScriptedProvider.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;
using test::ScriptedAnswer;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

struct Auth0WebAuthTest : testing::Test {
  test::ScriptedProvider provider;
  HTTPClient http = HTTPClient::make({.trustedAuthority = provider.authority.authority()});
  Auth0WebAuth webAuth{"client", provider.url(), http};

  /// How a login fails.
  std::string failure() {
    try {
      syncWait(webAuth.start());
      return "";
    } catch (WebAuthError const& error) {
      EXPECT_THAT(error.what(), Not(HasSubstr("secret")));
      EXPECT_EQ(TransactionStore::shared().current(), nullptr);
      return error.what();
    }
  }
  std::string failureOf(std::string const& redirect) {
    provider.redirect = redirect;
    return failure();
  }
};

TEST(PKCE, FollowsTheExampleOfTheStandard) {
  EXPECT_EQ(PKCE::challenge("dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk"),
            "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM");
  EXPECT_THAT(PKCE::randomText(), MatchesRegex("[A-Za-z0-9_-]+"));
  EXPECT_EQ(PKCE::randomText().size(), 43U);
  EXPECT_NE(PKCE::randomText(), PKCE::randomText());
}

TEST_F(Auth0WebAuthTest, LogsInAndChecksTheIDToken) {
  int closed = 0;
  webAuth.onCloseCallback = [&closed] { ++closed; };
  auto const credentials = syncWait(webAuth.start());
  EXPECT_EQ(credentials.accessToken(), "secret-a");
  EXPECT_EQ(credentials.refreshToken(), "secret-r");
  EXPECT_EQ(closed, 1);

  auto page = provider.pages.at(0);
  auto const exchanged = provider.exchanged();
  std::string const redirectURL = "com.vek.app://localhost/macos/com.vek.app/callback";
  EXPECT_EQ(PKCE::challenge(exchanged.at("code_verifier")), page.at("code_challenge"));
  EXPECT_EQ(exchanged.at("code"), "the-code");
  EXPECT_EQ(exchanged.at("redirect_uri"), redirectURL);
  EXPECT_EQ(page.at("state").size(), 43U);
  EXPECT_EQ(page.at("code_challenge").size(), 43U);
  EXPECT_EQ(page.at("auth0Client"), webAuth.telemetry.value());
  for (auto const* name : {"state", "code_challenge", "auth0Client"}) page.erase(name);
  EXPECT_EQ(page, (std::map<std::string, std::string>{{"scope", "openid profile email"},
                                                      {"client_id", "client"},
                                                      {"response_type", "code"},
                                                      {"redirect_uri", redirectURL},
                                                      {"code_challenge_method", "S256"}}));
  EXPECT_THAT(provider.shown.at(0).url, StartsWith(provider.url() + "authorize?"));
  EXPECT_EQ(provider.shown.at(0).callbackScheme, "com.vek.app");
  EXPECT_FALSE(provider.shown.at(0).prefersEphemeralWebBrowserSession);
}

TEST_F(Auth0WebAuthTest, ExchangeBeginsAfterItsLoginIsGone) {
  auto handler = std::make_unique<PKCE>(
      PKCE{.authentication = {.clientId = "client", .url = provider.url(), .session = http},
           .redirectURL = "com.vek.app://localhost/",
           .defaults = {},
           .verifier = "a verifier that takes memory of its own",
           .issuer = provider.url()});
  auto exchange = handler->credentials({{"code", "the-code"}});
  handler->verifier = "of another login";
  handler.reset();
  EXPECT_EQ(syncWait(std::move(exchange)).accessToken(), "secret-a");
  EXPECT_EQ(provider.exchanged().at("code_verifier"), "a verifier that takes memory of its own");
}

TEST_F(Auth0WebAuthTest, AuthorizeURLSaysWhatIsSet) {
  provider.redirect = "?error=x&state={state}";
  webAuth.parameters = {{"audience", "https://api.test"}, {"scope", "a+b"}, {"state", "mine"}};
  webAuth.nonce = "n";
  webAuth.maxAge = 60;
  webAuth.ephemeralSession = true;
  webAuth.invitationURL = "https://x.test/?invitation=i&organization=org_1";
  failure();
  auto const& page = provider.pages.at(0);
  EXPECT_EQ(page.at("audience"), "https://api.test");
  EXPECT_EQ(page.at("scope"), "openid a+b");
  EXPECT_THAT(provider.shown.at(0).url, HasSubstr("scope=openid%20a%2Bb"));
  EXPECT_EQ(page.at("state"), "mine");
  EXPECT_EQ(page.at("nonce"), "n");
  EXPECT_EQ(page.at("max_age"), "60");
  EXPECT_EQ(page.at("organization"), "org_1");
  EXPECT_EQ(page.at("invitation"), "i");
  EXPECT_TRUE(provider.shown.at(0).prefersEphemeralWebBrowserSession);

  webAuth.invitationURL = "https://x.test/?invitation=i";
  EXPECT_EQ(failure(),
            "The invitation URL (https://x.test/?invitation=i) is missing the 'invitation' and/or "
            "the 'organization' query parameters.");
}

TEST_F(Auth0WebAuthTest, RedirectSaysHowTheLoginEnded) {
  struct Case {
    char const* redirect;
    char const* message;
  };
  for (auto const& [redirect, message] : {
           Case{"?code=c&state=wrong",
                "Invalid callback URL: com.vek.app://.*\\?code=c&state=wrong"},
           Case{"?code=c", "Invalid callback URL: com.vek.app://.*\\?code=c"},
           Case{"", "Invalid callback URL: com.vek.app://.*callback"},
           Case{"?state={state}&code=%", "Invalid callback URL: .*"},
           Case{"?code=c#state=={state}", "Invalid callback URL: .*"},
           Case{"?state=wrong&code=x#state={state}",
                "Invalid callback URL: .*\\?state=wrong&code=x#.*"},
           Case{"?state={state}&state=wrong&code=x", "Invalid callback URL: .*&state=wrong&code=x"},
           Case{"?error=access_denied&error_description=Not%20today&state={state}",
                "An unexpected error occurred. CAUSE: Not today"},
           Case{"#error=access_denied&state={state}",
                "An unexpected error occurred. CAUSE: Received error with code access_denied."},
           Case{"?state={state}#id_token=secret-i&code==c",
                "The callback URL is missing the authorization code in its query parameters "
                R"(\(\{"id_token":"<REDACTED>","state":".*"\}\)\.)"},
       }) {
    EXPECT_THAT(failureOf(redirect), MatchesRegex(message));
  }
  EXPECT_EQ(provider.server.received().size(), 0U) << "no code was exchanged";
  EXPECT_EQ(failureOf("?code=the-code#state={state}&code=other"), "");
  EXPECT_EQ(provider.exchanged().at("code"), "the-code") << "the query wins";
}

TEST_F(Auth0WebAuthTest, ExchangeAndValidationFailWithTheirCause) {
  provider.exchange =
      ScriptedAnswer::of(401, R"({"error":"x","error_description":"Unauthorized"})");
  EXPECT_THAT(failure(), StartsWith("Unable to perform authentication with PKCE. Enable PKCE"));
  provider.exchange = ScriptedAnswer::of(403, R"({"error":"invalid_grant"})");
  EXPECT_EQ(failure(),
            "An unexpected error occurred. CAUSE: Received error with code invalid_grant.");
  provider.exchange = ScriptedAnswer::of(
      200, R"({"access_token":"secret-a","token_type":"b","expires_in":1,"id_token":"secret-i"})");
  EXPECT_EQ(failure(),
            "The ID token validation performed after authentication failed. CAUSE: ID token could "
            "not be decoded");
  provider.exchange.reset();
  provider.issuer = "https://evil.test/";
  EXPECT_EQ(failure(),
            "The ID token validation performed after authentication failed. CAUSE: Issuer (iss) "
            "claim mismatch in the ID token, expected (" +
                provider.url() + "), found (https://evil.test/)");
}

TEST_F(Auth0WebAuthTest, OneLoginAtATimeAndARedirectCountsOnce) {
  provider.redirect.reset();
  std::optional<Result<Credentials>> first;
  std::atomic<bool> isDone = false;
  auto const login = spawn(ThreadPool::shared(), [](auto& web, auto& place, auto& done) -> Task<> {
    place.emplace(co_await attempt(web.start()));
    done = true;
  }(webAuth, first, isDone));
  while (!TransactionStore::shared().current()) std::this_thread::sleep_for(1ms);
  while (provider.pageCount == 0) std::this_thread::sleep_for(1ms);

  auto second = webAuth;
  EXPECT_THROW(
      try { syncWait(second.start()); } catch (WebAuthError const& error) {
        EXPECT_EQ(error.code(), WebAuthError::Code::transactionActiveAlready);
        throw;
      },
      WebAuthError);

  auto const callback = provider.callback("?code=the-code&state={state}");
  EXPECT_FALSE(WebAuthenticationSession::handleCallback("com.other.app://localhost/"));
  EXPECT_FALSE(WebAuthenticationSession::handleCallback("com.vek.app://\x1b[2J"));
  EXPECT_FALSE(isDone) << "what is no redirect of ours changes nothing";
  EXPECT_TRUE(WebAuthenticationSession::handleCallback(callback));
  EXPECT_FALSE(WebAuthenticationSession::handleCallback(callback)) << "it came before";
  syncWait(login.wait());
  EXPECT_EQ(first->value().accessToken(), "secret-a");
  EXPECT_FALSE(WebAuthenticationSession::handleCallback(callback));
}

TEST_F(Auth0WebAuthTest, CanBeGivenUp) {
  std::string const cancelled = "The user cancelled the Web Auth operation.";
  provider.redirect.reset();
  webAuth.provider = [](auto url, auto scheme, auto completion) {
    return WebAuthenticationSession::make(url, scheme, completion, 20ms);
  };
  EXPECT_EQ(failure(), cancelled) << "nobody came back";

  webAuth.provider = nullptr;
  std::jthread const user([] {
    while (!TransactionStore::shared().current()) std::this_thread::sleep_for(1ms);
    TransactionStore::shared().current()->cancel();
  });
  EXPECT_EQ(failure(), cancelled);

  auto const login = spawn(ThreadPool::shared(), [](auto& web) -> Task<> {
    auto const outcome = co_await attempt(web.start());
    EXPECT_THROW((void)outcome.value(), CancellationError);
  }(webAuth));
  while (!TransactionStore::shared().current()) std::this_thread::sleep_for(1ms);
  login.cancel();
  syncWait(login.wait());
  EXPECT_EQ(TransactionStore::shared().current(), nullptr);
}

TEST_F(Auth0WebAuthTest, FailsWhereNoPageCanBeShown) {
  WebAuthenticationSession::setPresenter([](auto&) { throw std::runtime_error("No browser."); });
  EXPECT_EQ(failure(), "An unexpected error occurred. CAUSE: No browser.");
  WebAuthenticationSession::setPresenter(nullptr);
  EXPECT_EQ(failure(),
            "An unexpected error occurred. CAUSE: There is no way to show the login page.");
  webAuth.provider = [](auto url, auto scheme, auto completion) {
    WebAuthenticationSession::setPresenter([completion](auto&) { completion({}, nullptr); });
    return WebAuthenticationSession::make(url, scheme, completion);
  };
  EXPECT_EQ(failure(), "ASWebAuthenticationSession failed");
  webAuth = Auth0WebAuth("client", "https://", http);
  EXPECT_EQ(failure(),
            "Unable to retrieve the bundle identifier from Bundle.main.bundleIdentifier, or it "
            "could not be used to build a valid URL.");
}

}  // namespace
}  // namespace vek
