// SPDX-License-Identifier: MIT
// The program read and used without a look at the screen and without a mouse.
#include <gmock/gmock.h>

#include "support/Desktop.hpp"
#include "windows/ScreenReader.hpp"

namespace vek::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class Accessibility : public testing::Test {
 protected:
  Desktop desktop;
  ScreenReader const screen{desktop};
};

TEST_F(Accessibility, AllThatCanBePressedHasANameAndCanBePressed) {
  auto const vek = desktop.startVek();
  ASSERT_TRUE(screen.shows("push button: Login")) << screen.tree();
  auto const window = screen.tree();
  EXPECT_THAT(window, HasSubstr("frame: VEK\n"));
  EXPECT_THAT(window, HasSubstr("push button: Minimise\n"));
  EXPECT_THAT(window, Not(HasSubstr("button: \n")));

  EXPECT_TRUE(screen.press("Menu"));
  EXPECT_TRUE(screen.shows("menu item: Quit VEK")) << screen.tree();
  EXPECT_TRUE(screen.press("Settings…"));
  EXPECT_TRUE(screen.shows("frame: General")) << screen.tree();
  EXPECT_TRUE(screen.shows("label: The recognition by Apple is done on the device."))
      << screen.tree();
  EXPECT_TRUE(screen.shows("description: Apple")) << screen.tree();
  EXPECT_TRUE(screen.press("Account"));
  EXPECT_TRUE(screen.shows("frame: Account")) << screen.tree();
  EXPECT_THAT(screen.tree(), Not(HasSubstr("button: \n")));
}

}  // namespace
}  // namespace vek::test
