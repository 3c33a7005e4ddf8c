// SPDX-License-Identifier: MIT
// The program on a desktop of Wayland alone.
#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>

#include "windows/ScreenReader.hpp"

namespace vek::test {
namespace {

using testing::HasSubstr;

class Wayland : public testing::Test {
 protected:
  Wayland() {
    constexpr auto socket = "wayland-test";
    compositor_ = desktop.start({"weston", "--no-config", "--backend=headless-backend.so",
                                 "--idle-time=0", std::string("--socket=") + socket});
    EXPECT_TRUE(eventually([&] {
      return std::filesystem::exists(desktop.folder() / "run" / socket);
    })) << "the compositor did not come up";
    desktop.environment.erase("DISPLAY");
    desktop.environment["WAYLAND_DISPLAY"] = socket;
    // What is drawn for whom, in the log.
    desktop.environment["WAYLAND_DEBUG"] = "client";
  }

  Desktop desktop;
  ScreenReader const screen{desktop};

 private:
  std::unique_ptr<ChildProcess> compositor_;
};

TEST_F(Wayland, TheWindowOpensAndComesBackWhenItIsCalledFor) {
  auto const vek = desktop.startVek();
  ASSERT_TRUE(screen.shows("frame: VEK")) << desktop.log();
  EXPECT_THAT(desktop.log(), HasSubstr(R"(set_title("VEK"))"));
  ASSERT_TRUE(screen.press("Close"));
  EXPECT_TRUE(eventually([&] { return screen.tree().find("frame: VEK") == std::string::npos; }));
  EXPECT_EQ(desktop.start({VEKCTL_PROGRAM, "toggle"})->wait(), 0);
  EXPECT_TRUE(screen.shows("frame: VEK")) << desktop.log();
  vek->signal(SIGTERM);
  EXPECT_EQ(vek->wait(), 0) << desktop.log();
}

}  // namespace
}  // namespace vek::test
