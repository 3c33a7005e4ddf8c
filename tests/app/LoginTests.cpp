// SPDX-License-Identifier: MIT
// Signing in from a terminal, with the services' identity provider.
#include <fmt/format.h>

#include <csignal>
#include <fstream>
#include <optional>

#include "app/ProgramTests.hpp"
#include "platform/Files.hpp"
#include "platform/RedirectListener.hpp"
#include "platform/WebAuthenticationSession.hpp"
#include "support/Environment.hpp"
#include "support/IdentityClient.hpp"

namespace vek::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr auto* nothingWaits = "error: No login is waiting for this.\n";

/// A user who has not signed in yet.
class Login : public ProgramTests {
 protected:
  Login() { std::filesystem::remove_all(surroundings.dataHome()); }

  /// The page that a login asks the user to sign in on.
  static std::string pageOf(VekctlRun& login) {
    EXPECT_TRUE(login.waitForOutput("\n")) << login.messages();
    return login.lines().empty() ? "" : login.lines()[0];
  }
  /// The redirect, as from the hands of a user.
  [[nodiscard]] VekctlResult handOver(std::string const& redirect) {
    surroundings.input = surroundings.folder / "input";
    std::ofstream(surroundings.input) << redirect << "\n";
    auto result = run({"callback", "-"});
    surroundings.input = "/dev/null";
    return result;
  }

  IdentityClient browser{services};
};

TEST_F(Login, LastsFromTheFormUntilTheLogout) {
  auto const name = services.account().name;
  auto const user = fmt::format("{0} <{0}@vek.test>\n", name);
  EXPECT_EQ(run({"whoami"}).messages, "error: No credentials were found in the store.\n");

  VekctlRun login(surroundings, {"login"});
  auto const redirect = browser.redirectFrom(pageOf(login));
  EXPECT_EQ(handOver(redirect).status, 0);
  EXPECT_EQ(login.wait(), 0) << login.messages();
  EXPECT_THAT(login.output(), EndsWith("\nSigned in as " + user));
  auto const replayed = handOver(redirect);
  EXPECT_EQ(replayed.status, 1);
  EXPECT_EQ(replayed.messages, nothingWaits);

  EXPECT_EQ(run({"whoami"}).output, user);
  auto const whoAmI = boost::json::parse(run({"whoami", "--json"}).output);
  EXPECT_EQ(whoAmI.at("email").as_string(), name + "@vek.test");
  EXPECT_EQ(run({"transcripts"}).status, 0);

  EXPECT_EQ(run({"logout"}).output, "Signed out.\n");
  for (auto const* command : {"whoami", "transcripts", "logout"}) {
    EXPECT_EQ(run({command}).status, 1) << command;
  }
}

TEST_F(Login, EndsAsItsRedirectSays) {
  for (auto const& [query, message] :
       {std::pair{"?code=c&state=theirs", "Invalid callback URL: com.vek.app://"},
        {"?error=access_denied&error_description=Not%20today&state={}",
         "An unexpected error occurred. CAUSE: Not today"},
        {"?code=wrong&state={}", "An unexpected error occurred. CAUSE: "}}) {
    VekctlRun login(surroundings, {"login", "--json"});
    auto const page = boost::json::parse(pageOf(login));
    auto const state = queryValue(page.at("url").as_string().c_str(), "state");
    auto const redirect = IdentityClient::redirectURL + fmt::format(fmt::runtime(query), state);
    EXPECT_EQ(run({"callback", redirect}).status, 0);
    EXPECT_EQ(login.wait(), 1);
    EXPECT_THAT(login.messages(), HasSubstr(std::string("\nerror: ") + message));
    EXPECT_THAT(run({"whoami"}).status, 1);
  }
}

TEST_F(Login, IsOneAtATimeAndCanBeGivenUp) {
  VekctlRun login(surroundings, {"login"});
  auto const redirect = browser.redirectFrom(pageOf(login));
  auto const second = run({"login"});
  EXPECT_EQ(second.status, 1);
  EXPECT_EQ(second.messages,
            "error: Failed to start this transaction, as there is an active transaction at the "
            "moment.\n");
  for (auto const* unrelated : {"https://localhost/", "com.other.app://localhost/", ""}) {
    EXPECT_EQ(handOver(unrelated).messages, nothingWaits);
  }
  login.signal(SIGINT);
  EXPECT_EQ(login.wait(), 1);
  EXPECT_THAT(login.messages(), EndsWith("error: The user cancelled the Web Auth operation.\n"));
  EXPECT_EQ(handOver(redirect).messages, nothingWaits);
  VekctlRun third(surroundings, {"login"});
  EXPECT_THAT(pageOf(third), StartsWith(services.url() + "/authorize?"));
}

TEST_F(Login, GetsItsOwnRedirectWhileAnotherProgramWaitsToo) {
  EnvironmentVariable const sameUser("XDG_RUNTIME_DIR", surroundings.folder.path().string());
  std::string arrived;
  RedirectListener const listener("another");
  WebAuthenticationSession::setPresenter([](auto&) {});
  auto const session = WebAuthenticationSession::make(
      "https://idp.test/?state=another", "com.vek.app",
      [&](std::optional<std::string> url, auto const&) { arrived = url.value_or(""); });
  session->start();

  VekctlRun login(surroundings, {"login"});
  EXPECT_EQ(run({"callback", browser.redirectFrom(pageOf(login))}).status, 0);
  EXPECT_EQ(login.wait(), 0) << login.messages();
  EXPECT_EQ(arrived, "");
  VekctlRun next(surroundings, {"login"});
  pageOf(next);
  EXPECT_EQ(run({"callback", "com.vek.app://localhost/?state=another"}).status, 0);
  EXPECT_EQ(arrived, "com.vek.app://localhost/?state=another");
  WebAuthenticationSession::setPresenter(nullptr);
}

TEST_F(Login, ShowsItsPageWhereThereIsADesktop) {
  auto const programs = surroundings.folder / "bin";
  auto const opened = surroundings.folder / "opened";
  std::filesystem::create_directory(programs);
  std::ofstream(programs / "xdg-open")
      << "#!/bin/sh\nprintf %s \"$1\" >" << opened.string() << "\n";
  std::filesystem::permissions(programs / "xdg-open", std::filesystem::perms::owner_all);
  surroundings.environment["PATH"] = programs.string() + ":/usr/bin:/bin";
  surroundings.environment["WAYLAND_DISPLAY"] = "wayland-9";
  VekctlRun login(surroundings, {"login"});
  auto const page = pageOf(login);
  while (!readFile(opened)) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_EQ(run({"callback", browser.redirectFrom(page)}).status, 0);
  EXPECT_EQ(login.wait(), 0) << login.messages();
  EXPECT_EQ(readFile(opened), page);
}

}  // namespace
}  // namespace vek::test
