// SPDX-License-Identifier: MIT
// A login from `vekctl login` through the desktop's browser and back by the desktop's handler of
// redirects, with nothing scripted between them.
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <boost/json.hpp>
#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include "platform/Files.hpp"
#include "platform/Folders.hpp"
#include "support/ChildProcess.hpp"
#include "support/LocalServices.hpp"
#include "support/VekctlRun.hpp"

namespace vek::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

constexpr std::chrono::seconds patience{90};

class BrowserLogin : public testing::Test {
 protected:
  BrowserLogin() {
    auto const home = surroundings.folder.path();
    auto const driver = std::getenv("VEK_BROWSER_DRIVER");
    surroundings.deployment = {{"backendURL", services.url()},
                               {"authConfiguration", (services.folder() / "Auth0.plist").string()},
                               {"trustedAuthority", services.authority().string()}};
    // No desktop but the user's own files, which say what opens pages and redirects.
    surroundings.environment.insert(
        {{"HOME", home.string()},
         {"XDG_DATA_DIRS", home / "nothing"},
         {"XDG_CONFIG_DIRS", home / "nothing"},
         {"XDG_CURRENT_DESKTOP", ""},
         {"BROWSER", ""},
         {"DISPLAY", ":none"},
         {"VEK_BROWSER_DRIVER", driver ? driver : (dataHome() / "vek/browser-driver").string()}});
    auto const applications = surroundings.dataHome() / "applications";
    std::filesystem::create_directories(applications);
    std::filesystem::create_directories(home / "config");
    std::filesystem::create_directory_symlink(services.folder(),
                                              surroundings.dataHome() / "vek-services");
    std::ofstream(applications / "browser.desktop")
        << "[Desktop Entry]\nType=Application\nName=Browser\nMimeType=x-scheme-handler/https;\n"
        << "Exec=node " VEK_BROWSER " " << home.string() << " %u\n";
    inDesktop({"xdg-mime", "default", "browser.desktop", "x-scheme-handler/https"});
    inDesktop({VEK_REGISTER_LOGIN, "--yes", "--program", VEKCTL_PROGRAM});
  }

  /// Runs a program as the user.
  void inDesktop(std::vector<std::string> words) const {
    std::vector<std::string> all = {"env"};
    for (auto const& [name, value] : surroundings.environment) all.push_back(name + "=" + value);
    all.insert(all.end(), words.begin(), words.end());
    ChildProcess program(all, surroundings.folder / "log");
    while (program.readLine()) continue;
  }

  /// Tells the user in front of the browser what to do.
  void sendFor(std::string const& action) const {
    auto const [name, password] = services.account();
    std::ofstream(surroundings.folder / "errand") << boost::json::serialize(
        boost::json::object{{"action", action}, {"name", name}, {"password", password}});
  }
  /// What the user saw, once the browser is closed.
  [[nodiscard]] std::string seen() const {
    std::ofstream(surroundings.folder / "done") << "yes";
    auto const end = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < end) {
      if (auto const text = readFile(surroundings.folder / "seen")) return *text;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return "nothing: " + readFile(surroundings.folder / "log").value_or("");
  }

  LocalServices services;
  VekctlSurroundings surroundings;
};

TEST_F(BrowserLogin, SignsTheProgramIn) {
  sendFor("sign in");
  VekctlRun login(surroundings, {"login"});
  EXPECT_EQ(login.wait(), 0) << login.messages();
  EXPECT_EQ(seen(), "the form");
  auto const name = services.account().name;
  EXPECT_THAT(login.output(), HasSubstr("Signed in as " + name));
  EXPECT_THAT(runVekctl(surroundings, {"whoami"}).output, HasSubstr(name));
}

TEST_F(BrowserLogin, GoesOnAfterAWrongPassword) {
  sendFor("mistype the password");
  VekctlRun login(surroundings, {"login"});
  EXPECT_EQ(login.wait(), 0) << login.messages();
  EXPECT_EQ(seen(), "Wrong name or password.");
}

TEST_F(BrowserLogin, EndsWhenItsPageIsCancelled) {
  sendFor("cancel");
  VekctlRun login(surroundings, {"login"});
  EXPECT_EQ(login.wait(), 1);
  EXPECT_EQ(seen(), "the form");
  EXPECT_THAT(login.messages(), HasSubstr("error: An unexpected error occurred. CAUSE: "));
  EXPECT_EQ(runVekctl(surroundings, {"whoami"}).status, 1);
}

TEST_F(BrowserLogin, WaitsForAnotherTryWhenTheBrowserIsClosed) {
  sendFor("close");
  VekctlRun login(surroundings, {"login"});
  EXPECT_EQ(seen(), "the form");
  EXPECT_TRUE(login.waitForOutput("\n"));
  login.signal(SIGINT);
  EXPECT_EQ(login.wait(), 1);
  EXPECT_THAT(login.messages(), EndsWith("error: The user cancelled the Web Auth operation.\n"));
}

}  // namespace
}  // namespace vek::test
