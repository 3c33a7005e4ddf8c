// SPDX-License-Identifier: MIT
// The program read and used without a look at the screen and without a mouse.
#include <gmock/gmock.h>

#include <csignal>

#include "support/Desktop.hpp"

namespace vek::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class Accessibility : public testing::Test {
 protected:
  Accessibility() {
    desktop.environment.erase("NO_AT_BRIDGE");
    bus_ = desktop.start({"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"});
    desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1";
    vek_ = desktop.startVek();
  }
  void TearDown() override {
    // Gently, so that it takes the bus with it that it has started.
    bus_->signal(SIGTERM);
    static_cast<void>(bus_->wait());
  }

  [[nodiscard]] std::string tree() const {
    return desktop.run({"/usr/bin/python3", VEK_ACCESSIBLE, "tree"});
  }
  /// Whether a thing of that role and name comes to be on the screen.
  [[nodiscard]] bool shows(std::string const& thing) const {
    return eventually(
        [&] { return ("\n" + tree()).find("\n" + thing + "\n") != std::string::npos; });
  }
  [[nodiscard]] bool press(std::string const& name) const {
    return desktop.start({"/usr/bin/python3", VEK_ACCESSIBLE, "press", name})->wait() == 0;
  }

  Desktop desktop;

 private:
  std::unique_ptr<ChildProcess> bus_;
  std::unique_ptr<ChildProcess> vek_;
};

TEST_F(Accessibility, AllThatCanBePressedHasANameAndCanBePressed) {
  ASSERT_TRUE(shows("push button: Login")) << tree();
  auto const window = tree();
  EXPECT_THAT(window, HasSubstr("frame: VEK\n"));
  EXPECT_THAT(window, HasSubstr("push button: Minimise\n"));
  EXPECT_THAT(window, Not(HasSubstr("button: \n")));

  EXPECT_TRUE(press("Menu"));
  EXPECT_TRUE(shows("menu item: Quit VEK")) << tree();
  EXPECT_TRUE(press("Settings…"));
  EXPECT_TRUE(shows("frame: General")) << tree();
  EXPECT_TRUE(press("Account"));
  EXPECT_TRUE(shows("frame: Account")) << tree();
  EXPECT_THAT(tree(), Not(HasSubstr("button: \n")));
}

}  // namespace
}  // namespace vek::test
