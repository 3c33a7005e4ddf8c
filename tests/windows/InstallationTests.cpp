// SPDX-License-Identifier: MIT
// The program as it is installed, found by a desktop that knows it by its name alone.
#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>

#include "support/Desktop.hpp"

namespace vek::test {
namespace {

class Installation : public testing::Test {
 protected:
  Installation() {
    static_cast<void>(desktop.run({"cmake", "--install", VEK_BUILD, "--prefix", prefix.string()}));
    desktop.environment["XDG_DATA_DIRS"] = prefix / "share";
    bus_ = desktop.start({"dbus-daemon", "--session", "--nofork", "--print-address"});
    desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = bus_->readLine().value_or("");
  }

  [[nodiscard]] std::string call(std::vector<std::string> words) const {
    words.insert(words.begin(), {"gdbus", "call", "--session"});
    return desktop.run(std::move(words));
  }
  /// The process that owns the program's name.
  [[nodiscard]] pid_t owner() const {
    auto const answer = call({"-d", "org.freedesktop.DBus", "-o", "/org/freedesktop/DBus", "-m",
                              "org.freedesktop.DBus.GetConnectionUnixProcessID", "com.vek.app"});
    auto const begin = answer.find_last_of(' ');
    return begin == std::string::npos ? 0 : std::stoi(answer.substr(begin));
  }

  Desktop desktop;
  std::filesystem::path const prefix = desktop.folder() / "usr";

 private:
  std::unique_ptr<ChildProcess> bus_;
};

TEST_F(Installation, TheSessionBusStartsItByItsName) {
  EXPECT_EQ(call({"-d", "com.vek.app", "-o", "/com/vek/app", "-m",
                  "org.freedesktop.Application.Activate", "{}"}),
            "()\n");
  EXPECT_TRUE(eventually([&] { return desktop.window("VEK").has_value(); }));
  auto const process = owner();
  ASSERT_GT(process, 0);
  EXPECT_EQ(std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/exe"),
            prefix / "bin/vek");
  kill(process, SIGTERM);
  EXPECT_TRUE(eventually([&] { return !desktop.window("VEK"); }));
}

TEST_F(Installation, TheDesktopKnowsItForTheRedirectOfALogin) {
  // A desktop passes over entries of programs that it cannot start.
  desktop.environment["PATH"] = (prefix / "bin").string() + ":/usr/bin:/bin";
  EXPECT_THAT(desktop.run({"gio", "mime", "x-scheme-handler/com.vek.app"}),
              testing::HasSubstr(": com.vek.app.desktop\n"));
}

}  // namespace
}  // namespace vek::test
