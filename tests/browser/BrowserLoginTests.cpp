// SPDX-License-Identifier: MIT
// A login from `vekctl login` through the desktop's browser and back by the desktop's handler of
// redirects, with nothing scripted between them.
#include <gmock/gmock.h>

#include <csignal>

#include "support/LocalServices.hpp"
#include "support/UserBrowser.hpp"
#include "support/VekctlRun.hpp"

namespace vek::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class BrowserLogin : public testing::Test {
 protected:
  BrowserLogin() {
    surroundings.deployment = {{"backendURL", services.url()},
                               {"authConfiguration", (services.folder() / "Auth0.plist").string()},
                               {"trustedAuthority", services.authority().string()}};
    surroundings.environment.emplace("DISPLAY", ":none");
  }

  LocalServices services;
  VekctlSurroundings surroundings;
  UserBrowser const browser{services, surroundings.folder.path(), surroundings.environment};
};

TEST_F(BrowserLogin, SignsTheProgramIn) {
  browser.sendFor("sign in");
  VekctlRun login(surroundings, {"login"});
  EXPECT_EQ(login.wait(), 0) << login.messages();
  EXPECT_EQ(browser.seen(), "the form");
  auto const name = services.account().name;
  EXPECT_THAT(login.output(), HasSubstr("Signed in as " + name));
  EXPECT_THAT(runVekctl(surroundings, {"whoami"}).output, HasSubstr(name));
}

TEST_F(BrowserLogin, GoesOnAfterAWrongPassword) {
  browser.sendFor("mistype the password");
  VekctlRun login(surroundings, {"login"});
  EXPECT_EQ(login.wait(), 0) << login.messages();
  EXPECT_EQ(browser.seen(), "Wrong name or password.");
}

TEST_F(BrowserLogin, EndsWhenItsPageIsCancelled) {
  browser.sendFor("cancel");
  VekctlRun login(surroundings, {"login"});
  EXPECT_EQ(login.wait(), 1);
  EXPECT_EQ(browser.seen(), "the form");
  EXPECT_THAT(login.messages(), HasSubstr("error: An unexpected error occurred. CAUSE: "));
  EXPECT_EQ(runVekctl(surroundings, {"whoami"}).status, 1);
}

TEST_F(BrowserLogin, WaitsForAnotherTryWhenTheBrowserIsClosed) {
  browser.sendFor("close");
  VekctlRun login(surroundings, {"login"});
  EXPECT_EQ(browser.seen(), "the form");
  EXPECT_TRUE(login.waitForOutput("\n"));
  login.signal(SIGINT);
  EXPECT_EQ(login.wait(), 1);
  EXPECT_THAT(login.messages(), EndsWith("error: The user cancelled the Web Auth operation.\n"));
}

}  // namespace
}  // namespace vek::test
