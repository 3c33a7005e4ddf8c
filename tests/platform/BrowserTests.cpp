// SPDX-License-Identifier: MIT
#include "platform/Browser.hpp"

#include <filesystem>
#include <fstream>

#include "platform/Files.hpp"
#include "support/Environment.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

struct BrowserTest : testing::Test {
  /// Puts a program where the desktop's are looked for.
  void install(std::string const& name, std::string const& commands) const {
    std::ofstream(folder / name) << "#!/bin/sh\n" << commands << "\n";
    std::filesystem::permissions(folder / name, std::filesystem::perms::owner_all);
  }

  test::TemporaryFolder folder;
  test::EnvironmentVariable const path{"PATH", folder.path().string()};
  std::string const note = "printf '%s\\n' \"$@\" >" + (folder / "opened").string();
  std::string const url = "https://idp.test/authorize?a=$(id)&b=`id`;c='\" %22";
};

TEST_F(BrowserTest, GetsThePageAsItIs) {
  install("xdg-open", note);
  openInBrowser(url);
  EXPECT_EQ(readFile(folder / "opened"), url + "\n");
}

TEST_F(BrowserTest, IsOpenedByWhateverCan) {
  EXPECT_THROW(openInBrowser(url), std::runtime_error);
  install("gio", note);
  openInBrowser(url);
  EXPECT_EQ(readFile(folder / "opened"), "open\n" + url + "\n");
  install("xdg-open", "exit 3");
  std::filesystem::remove(folder / "opened");
  openInBrowser(url);
  EXPECT_EQ(readFile(folder / "opened"), "open\n" + url + "\n");
  install("gio", "kill -9 $$");
  EXPECT_THROW(openInBrowser(url), std::runtime_error);
}

TEST(Desktop, IsThereWhenADisplayIs) {
  test::EnvironmentVariable const noX11("DISPLAY", "");
  test::EnvironmentVariable const noWayland("WAYLAND_DISPLAY", "");
  EXPECT_FALSE(hasDesktop());
  test::EnvironmentVariable const wayland("WAYLAND_DISPLAY", "wayland-0");
  EXPECT_TRUE(hasDesktop());
}

}  // namespace
}  // namespace vek
