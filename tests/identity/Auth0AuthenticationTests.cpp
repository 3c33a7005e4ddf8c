// SPDX-License-Identifier: MIT
#include "identity/Auth0Authentication.hpp"

#include <future>

#include <boost/json/parse.hpp>

#include "identity/Auth0Configuration.hpp"
#include "platform/Deployment.hpp"
#include "platform/Files.hpp"
#include "platform/HTTPError.hpp"
#include "records/Base64URL.hpp"
#include "runtime/SyncWait.hpp"
#include "support/HTTPSTestServer.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;
using test::ScriptedAnswer;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr char const* tokens = R"({"access_token": "secret-a", "token_type": "Bearer",
    "expires_in": 86400, "id_token": "secret-i"})";

struct Auth0AuthenticationTest : testing::Test {
  test::TestAuthority authority;
  test::HTTPSTestServer server{authority, [](auto&) { return ScriptedAnswer::of(200, tokens); }};
  Auth0Authentication authentication{
      .clientId = "client",
      .url = server.url() + "/",
      .session = HTTPClient::make({.trustedAuthority = authority.authority()})};

  AuthenticationError renewalFailure(ScriptedAnswer answer) {
    server.answerWith(std::move(answer));
    try {
      syncWait(authentication.renew("secret-r").value());
    } catch (AuthenticationError const& error) {
      return error;
    }
    ADD_FAILURE() << "nothing failed";
    return AuthenticationError(boost::json::object());
  }

  [[nodiscard]] boost::json::value lastBody() const {
    return boost::json::parse(server.received().back().body);
  }
};

TEST_F(Auth0AuthenticationTest, SendsEachGrantAsJSON) {
  auto const credentials =
      syncWait(authentication.codeExchange("c", "v", "com.vek.app://host/x").value());
  EXPECT_EQ(server.received()[0].line, "POST /oauth/token");
  EXPECT_THAT(server.received()[0].headers, HasSubstr("Content-Type: application/json\r\n"));
  EXPECT_EQ(lastBody(), boost::json::parse(R"({"code": "c", "code_verifier": "v",
      "redirect_uri": "com.vek.app://host/x", "grant_type": "authorization_code",
      "client_id": "client"})"));
  EXPECT_EQ(credentials.accessToken(), "secret-a");
  EXPECT_EQ(credentials.idToken(), "secret-i");
  EXPECT_EQ(credentials.refreshToken(), std::nullopt);
  auto const rest = credentials.expiresIn() - std::chrono::system_clock::now();
  EXPECT_TRUE(rest > 23h && rest <= 24h);

  auto const renewal = authentication.renew("secret-r", "profile");
  std::promise<Result<Credentials>> promise;
  renewal.parameters({{"client_id", "other"}, {"number", 7}})
      .headers({{"X-Name", "value"}})
      .start([&](Result<Credentials> const& result) { promise.set_value(result); });
  EXPECT_EQ(promise.get_future().get().value().accessToken(), "secret-a");
  EXPECT_EQ(lastBody(), boost::json::parse(R"({"refresh_token": "secret-r", "number": 7,
      "grant_type": "refresh_token", "client_id": "other", "scope": "openid profile"})"));
  EXPECT_THAT(server.received().back().headers, HasSubstr("X-Name: value\r\n"));

  syncWait(renewal.value());
  EXPECT_EQ(lastBody().at("client_id"), "client") << "the request itself has not changed";
  syncWait(authentication.renew("secret-r").value());
  EXPECT_FALSE(lastBody().as_object().contains("scope"));
}

TEST_F(Auth0AuthenticationTest, GetsTheKeySet) {
  server.answerWith(ScriptedAnswer::of(200, R"({"keys": [{"kty": "RSA", "kid": "1", "n": "AQ",
      "e": "AQAB", "x5c": ["MII"], "unknown": {}}, {"kty": "EC"}]})"));
  auto const keys = syncWait(authentication.jwks().value()).keys;
  EXPECT_EQ(server.received().back().line, "GET /.well-known/jwks.json");
  ASSERT_EQ(keys.size(), 2U);
  EXPECT_EQ(keys[0].keyId, "1");
  EXPECT_EQ(keys[0].exponent, "AQAB");
  EXPECT_EQ(keys[0].certChain->front(), "MII");
  EXPECT_EQ(keys[1].keyId, std::nullopt);
}

TEST_F(Auth0AuthenticationTest, TellsTheProgramsVersion) {
  syncWait(authentication.renew("r").value());
  constexpr std::string_view name = "\r\nAuth0-Client: ";
  auto const headers = "\r\n" + server.received().back().headers;
  auto const begin = headers.find(name) + name.size();
  auto const value = headers.substr(begin, headers.find("\r\n", begin) - begin);
  EXPECT_EQ(value, *authentication.telemetry.value());
  auto const told = boost::json::parse(Base64URL::decode(value).value()).as_object();
  EXPECT_TRUE(told.at("name").is_string() && told.at("version").is_string());
  EXPECT_TRUE(told.at("env").at("macOS").is_string());

  authentication.telemetry.enabled = false;
  syncWait(authentication.renew("r").value());
  EXPECT_THAT(server.received().back().headers, Not(HasSubstr("Auth0-Client")));
}

TEST_F(Auth0AuthenticationTest, SaysWhatTheAnswerMeans) {
  struct Case {
    ScriptedAnswer answer;
    int status = 0;
    char const* code = "";
    char const* description = "";
  };
  constexpr char const* notJSON = "Unable to complete the operation. CAUSE: $: not JSON: ";
  for (auto const& [answer, status, code, description] : {
           Case{ScriptedAnswer::of(403, ""), 403, "a0.sdk.internal_error.empty",
                "Empty response body."},
           Case{ScriptedAnswer::of(502, "<h1>Bad Gateway</h1>"), 502, "a0.sdk.internal_error.plain",
                "<h1>Bad Gateway</h1>"},
           Case{ScriptedAnswer::of(200, "Welcome to the hotel"), 200, "a0.sdk.internal_error.plain",
                "Welcome to the hotel"},
           Case{ScriptedAnswer::of(500, "[1]"), 500, "a0.sdk.internal_error.plain", "[1]"},
           Case{ScriptedAnswer::of(403, R"({"error": "invalid_grant",
                "error_description": "Unknown or invalid refresh token."})"),
                403, "invalid_grant", "Unknown or invalid refresh token."},
           Case{ScriptedAnswer::of(401, R"({"code": "x", "description": "Unauthorized",
                "error_description": "y"})"),
                401, "x", "Unauthorized"},
           Case{ScriptedAnswer::of(400, R"({"error": "a", "code": "b", "description": 7})"), 400,
                "a", "Received error with code a."},
           Case{ScriptedAnswer::of(400, R"({"id_token":"secret-i","reason":1})"), 400,
                "a0.sdk.internal_error.unknown",
                R"(Failed with unknown error {"id_token":"<REDACTED>","reason":1}.)"},
           Case{ScriptedAnswer::of(200, R"({"access_token":"secret-a","token_type":"Bearer"})"),
                200, "a0.sdk.internal_error.plain",
                "Unable to complete the operation. CAUSE: $.expires_in: missing"},
           Case{ScriptedAnswer::of(200, R"({"access_token":"secret-a","tok)"), 200,
                "a0.sdk.internal_error.plain", notJSON},
           Case{ScriptedAnswer::of(200, "\xef\xbb\xbf{\"access_token\":\"secret-a\"}"), 200,
                "a0.sdk.internal_error.plain", notJSON},
           Case{ScriptedAnswer::of(200, "\n{\"refresh_token\":\"secret-r\""), 200,
                "a0.sdk.internal_error.plain", notJSON},
           Case{ScriptedAnswer::of(200, ")]}'\n{\"id_token\":\"secret-i\"}"), 200,
                "a0.sdk.internal_error.plain", notJSON},
           Case{ScriptedAnswer::of(200, "access_token=secret-a&expires_in=60"), 200,
                "a0.sdk.internal_error.plain", notJSON},
           Case{ScriptedAnswer::of(200, std::string(2'000'000, ' ')), 0,
                "a0.sdk.internal_error.plain",
                "Unable to complete the operation. CAUSE: The server's answer is too large."},
           Case{ScriptedAnswer::cutShort(""), 0, "a0.sdk.internal_error.plain",
                "Unable to complete the operation. CAUSE: The connection to the server was lost"},
       }) {
    auto const error = renewalFailure(answer);
    EXPECT_EQ(error.statusCode(), status) << description;
    EXPECT_EQ(error.code(), code) << description;
    EXPECT_THAT(error.what(), AllOf(testing::StartsWith(description), Not(HasSubstr("secret"))));
  }
}

TEST(IncludingRequiredScope, PutsOpenIDInFrontWhereItIsMissing) {
  EXPECT_EQ(includingRequiredScope("profile email"), "openid profile email");
  EXPECT_EQ(includingRequiredScope("profile openid"), "profile openid");
  EXPECT_EQ(includingRequiredScope("openidx"), "openid openidx");
}

TEST(Auth0Configuration, FindsTheProviderOfADomain) {
  for (auto const* domain : {"example.test", "example.test/", "https://example.test"}) {
    EXPECT_EQ(baseURL(domain), "https://example.test/");
  }
  EXPECT_EQ(baseURL("localhost:8443/tenant"), "https://localhost:8443/tenant/");
}

TEST(Auth0ConfigurationDeathTest, StopsTheProcessWithoutItsFileAndEntries) {
  test::TemporaryFolder const folder;
  auto const file = folder / "Auth0.plist";
  auto const configure = [&](std::string_view content) {
    if (!content.empty()) replaceFile(file, content);
    setDeployment({.authConfiguration = file});
  };
  auto const ends = testing::ExitedWithCode(1);
  constexpr char const* missing =
      "^Missing Auth0.plist file with 'ClientId' and 'Domain' entries in main bundle!\n$";
  configure("");
  EXPECT_EXIT((void)Auth0Configuration::ofMainBundle(), ends, missing);
  configure("<plist><dict><key>ClientId</key>");
  EXPECT_EXIT((void)Auth0Configuration::ofMainBundle(), ends, missing);
  configure(
      "<plist><dict><key>ClientId</key><string>a &amp; b</string>"
      "<key>Domain</key><integer>1</integer></dict></plist>");
  EXPECT_EXIT((void)Auth0Configuration::ofMainBundle(), ends,
              "^Auth0.plist file at .*/Auth0.plist is missing 'ClientId' and/or 'Domain' entries!\n"
              "File currently has the following entries: .ClientId: a & b.\n$");
  configure(R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist SYSTEM "plist.dtd">
<plist version="1.0"><dict>
  <!-- the one of these tests -->
  <key>ClientId</key> <string>client</string>
  <key>Nested</key> <dict><key>Domain</key><string>wrong</string></dict>
  <key>Domain</key> <string>example.test</string>
</dict></plist>)");
  auto const configuration = Auth0Configuration::ofMainBundle();
  EXPECT_EQ(configuration.clientId, "client");
  EXPECT_EQ(configuration.domain, "example.test");
  EXPECT_EXIT((void)baseURL(" "), ends, "' ' is no domain of a URL!");
}

}  // namespace
}  // namespace vek
