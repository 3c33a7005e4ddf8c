// SPDX-License-Identifier: MIT
// The one process of a user, and what reaches it from outside.
#include <gmock/gmock.h>

#include <csignal>

#include "support/Desktop.hpp"

namespace vek::test {
namespace {

using testing::HasSubstr;

/// As the screen counts it.
std::uint32_t millisecondsNow() {
  auto const now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

/// Has the program's name until it is asked for a second time, and is not to be found.
constexpr auto endingInstance = R"(
from gi.repository import Gio, GLib
calls = []
def answer(bus, sender, path, interface, method, arguments, invocation):
    calls.append(method)
    if len(calls) == 2: Gio.bus_unown_name(name)
    invocation.return_dbus_error('org.freedesktop.DBus.Error.ServiceUnknown', 'gone')
methods = Gio.DBusNodeInfo.new_for_xml("""<node><interface name='org.freedesktop.Application'>
  <method name='Activate'><arg type='a{sv}' direction='in'/></method></interface></node>""")
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.register_object('/com/vek/app', methods.interfaces[0], answer, None, None)
name = Gio.bus_own_name_on_connection(bus, 'com.vek.app', Gio.BusNameOwnerFlags.NONE,
                                      lambda *_: print('ready', flush=True), None)
GLib.MainLoop().run()
)";

class OneInstance : public testing::Test {
 protected:
  bool isShown() {
    return eventually([this] { return desktop.window("VEK").has_value(); });
  }
  bool staysHidden() {
    desktop.settle();
    return !desktop.window("VEK");
  }
  /// The program with its window out of sight.
  std::unique_ptr<ChildProcess> startHidden() {
    desktop.startPanel();
    auto vek = desktop.startVek();
    EXPECT_TRUE(staysHidden()) << desktop.log();
    return vek;
  }
  /// Calls a method of the program as the desktop does; what the bus answers.
  std::string call(std::string const& method, std::vector<std::string> arguments) {
    std::vector<std::string> words = {
        "sh", "-c", R"(exec gdbus call --session -d com.vek.app -o /com/vek/app -m "$@" 2>&1)",
        "sh", "org.freedesktop.Application." + method};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return desktop.run(std::move(words));
  }

  Desktop desktop;
};

TEST_F(OneInstance, ASecondStartBringsTheFirstForwardAndEndsTheDesktopsWait) {
  auto const vek = startHidden();
  auto const file = (desktop.folder() / "messages").string();
  auto const spy = desktop.start({"sh", "-c", "exec xev -root -event property >" + file});
  auto const hasSeen = [&](std::string const& message) {
    return eventually(
        [&] { return desktop.run({"cat", file}).find(message) != std::string::npos; });
  };
  auto const other = desktop.start({"xmessage", "-title", "other", "text"});
  ASSERT_TRUE(hasSeen("_NET_ACTIVE_WINDOW"));

  desktop.environment["DESKTOP_STARTUP_ID"] = "click_TIME" + std::to_string(millisecondsNow());
  auto const second = desktop.startVek();
  EXPECT_EQ(second->wait(), 0);
  EXPECT_TRUE(eventually([&] { return desktop.activeWindow() == desktop.window("VEK"); }))
      << desktop.log();
  EXPECT_TRUE(hasSeen("_NET_STARTUP_INFO_BEGIN"));
}

TEST_F(OneInstance, OneThatEndsWhileAnotherStartsLeavesItTheName) {
  auto const ending = desktop.start({"/usr/bin/python3", "-c", endingInstance});
  ASSERT_EQ(ending->readLine(), "ready");
  auto const vek = desktop.startVek();
  EXPECT_TRUE(isShown()) << desktop.log();
  EXPECT_EQ(call("Activate", {"{}"}), "()\n");
}

TEST_F(OneInstance, ARedirectIsHandedToTheFirstWithoutAWindow) {
  auto const vek = startHidden();
  auto const second = desktop.startVek({"com.vek.app://localhost/callback?code=1&state=unknown"});
  EXPECT_EQ(second->wait(), 0);
  EXPECT_THAT(desktop.log(), HasSubstr("the redirect of no login that waits"));
  EXPECT_TRUE(staysHidden());
}

TEST_F(OneInstance, TheDesktopActivatesItAndKnowsWhichActionsItHas) {
  auto const vek = startHidden();
  EXPECT_THAT(call("ActivateAction", {"dance", "[]", "{}"}), HasSubstr("no action 'dance'"));
  EXPECT_TRUE(staysHidden());
  EXPECT_EQ(call("Activate", {"{}"}), "()\n");
  EXPECT_TRUE(isShown());
}

TEST_F(OneInstance, WhoCannotRecordYetIsShownTheWindow) {
  EXPECT_EQ(desktop.start({VEKCTL_PROGRAM, "toggle"})->wait(), 1) << "it does not run yet";
  auto const vek = startHidden();
  EXPECT_EQ(desktop.start({VEKCTL_PROGRAM, "toggle"})->wait(), 0);
  EXPECT_TRUE(isShown());
}

TEST_F(OneInstance, TheDesktopStartsItAtLoginWhenToldTo) {
  auto const entry = (desktop.folder() / "config/autostart/com.vek.app.desktop").string();
  EXPECT_EQ(desktop.run({VEKCTL_PROGRAM, "autostart"}), "off\n");
  EXPECT_EQ(desktop.run({VEKCTL_PROGRAM, "autostart", "on"}), "on\n");
  EXPECT_THAT(desktop.run({"cat", entry}), HasSubstr("\nExec=" VEK_PROGRAM "\n"));
  EXPECT_EQ(desktop.run({"desktop-file-validate", entry}), "");
  // As the desktop's own settings switch it off.
  static_cast<void>(desktop.run({"sh", "-c", R"(echo Hidden=true >> "$0")", entry}));
  EXPECT_EQ(desktop.run({VEKCTL_PROGRAM, "autostart"}), "off\n");
  EXPECT_EQ(desktop.run({VEKCTL_PROGRAM, "autostart", "on"}), "on\n");
  EXPECT_EQ(desktop.run({VEKCTL_PROGRAM, "autostart", "off"}), "off\n");
  EXPECT_FALSE(std::filesystem::exists(entry));
}

TEST_F(OneInstance, WithoutASessionBusTheWindowOpensAndTheLogSaysWhatIsMissing) {
  desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent";
  auto const vek = desktop.startVek();
  EXPECT_TRUE(isShown());
  EXPECT_THAT(desktop.log(), HasSubstr("There is no session bus"));
}

TEST_F(OneInstance, ItEndsCleanlyWhenToldTo) {
  for (int const signal : {SIGTERM, SIGINT}) {
    auto const vek = desktop.startVek();
    ASSERT_TRUE(isShown()) << desktop.log();
    vek->signal(signal);
    EXPECT_EQ(vek->wait(), 0) << desktop.log();
  }
}

}  // namespace
}  // namespace vek::test
