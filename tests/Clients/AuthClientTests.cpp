// SPDX-License-Identifier: MIT
#include "Clients/AuthClientImpl.hpp"

#include "identity/WebAuthError.hpp"
#include "platform/Deployment.hpp"
#include "platform/Files.hpp"
#include "runtime/SyncWait.hpp"
#include "support/ScriptedProvider.hpp"

namespace vek {
namespace {

using testing::ElementsAre;

TEST(AuthClient, LogsInForTheBackendAndLogsOnlyWhatFailed) {
  test::TemporaryFolder const folder;
  test::ScriptedProvider provider;
  auto const domain = provider.server.url().substr(std::string("https://").size());
  replaceFile(folder / "Auth0.plist",
              "<plist><dict><key>Domain</key><string>" + domain +
                  "</string><key>ClientId</key><string>client</string></dict></plist>");
  auto const before = deployment();
  setDeployment({.authConfiguration = folder / "Auth0.plist", .audience = "https://api.vek.test"});
  std::vector<std::string> log;
  LogRedirection const redirection(
      [&log](LogLevel level, std::string_view category, std::string_view message) {
        log.push_back(fmt::format("{} {}: {}", name(level), category, message));
      },
      LogLevel::notice);

  auto const client = AuthClientImpl::client(std::make_shared<AuthClientImpl const>(
      HTTPClient::make({.trustedAuthority = provider.authority.authority()})));
  EXPECT_EQ(syncWait(client.logIn()).accessToken(), "secret-a");
  EXPECT_EQ(provider.pages.at(0).at("audience"), "https://api.vek.test");
  EXPECT_THAT(log, ElementsAre());

  provider.redirect = "?error=access_denied&error_description=Not%20today&state={state}";
  EXPECT_THROW(syncWait(client.logIn()), WebAuthError);
  EXPECT_THAT(log, ElementsAre("error AuthClient: Failed to start Auth0 web auth: An unexpected "
                               "error occurred. CAUSE: Not today"));
  setDeployment(before);
}

TEST(AuthClient, AudienceIsTheBackendsNameAlone) {
  auto const audience = Deployment::builtIn().audience;
  EXPECT_EQ(audience.size(), 20U);
  EXPECT_THAT(audience, testing::MatchesRegex("https://[^/]+"));
}

}  // namespace
}  // namespace vek
