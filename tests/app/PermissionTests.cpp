// SPDX-License-Identifier: MIT
// Who may record, and what is told to who may not.
#include <fstream>

#include "app/ProgramTests.hpp"
#include "support/PermissionStore.hpp"
#include "support/SessionBus.hpp"

namespace vek::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class Permission : public ProgramTests {
 protected:
  void expectDenied(std::string const& reason) const {
    auto const before = storedTranscripts();
    auto const result = run({"record"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.messages, HasSubstr("com.vek.app [microphone] error: " + reason + "\n"));
    EXPECT_THAT(result.messages,
                EndsWith("\nerror: Authorization denied. \nOpen System Settings > Privacy & "
                         "Security > Speech Recognition and enable it.\n"));
    EXPECT_EQ(storedTranscripts(), before);
  }
  /// It is let in, and has nothing to record from.
  void expectAllowed() const {
    EXPECT_THAT(run({"record"}).messages, EndsWith("\nerror: Audio engine error.\n"));
  }
};

TEST_F(Permission, TheDesktopsSwitchDeniesUnlessThereIsNoDesktop) {
  surroundings.environment["GSETTINGS_BACKEND"] = "keyfile";
  auto const settings = surroundings.folder / "config" / "glib-2.0" / "settings";
  std::filesystem::create_directories(settings);
  std::ofstream(settings / "keyfile") << "[org/gnome/desktop/privacy]\ndisable-microphone=true\n";
  expectDenied("The microphone is switched off in the desktop's privacy settings.");
  EXPECT_THAT(run({"record", "--provider", "deepgram"}).messages,
              EndsWith("Security > Microphone and enable it.\n"));
  // The text of a file is nobody's secret.
  for (std::string const provider : {"apple", "deepgram"}) {
    auto const file = speechFile("hts-slt-s03");
    EXPECT_EQ(run({"record", "--provider", provider, "--from", file}).status, 0) << provider;
  }

  std::ofstream(settings / "keyfile") << "[org/gnome/desktop/privacy]\ndisable-microphone=false\n";
  expectAllowed();
  std::ofstream(settings / "keyfile") << "[org/gnome/desktop/privacy]\ndisable-microphone=true\n";
  surroundings.environment["XDG_DATA_DIRS"] = "/nonexistent";
  expectAllowed();
}

TEST_F(Permission, ThePermissionStoreOfTheSessionDenies) {
  SessionBus const bus;
  surroundings.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
  expectAllowed();
  PermissionStore const store(bus.address(), {{"com.vek.app", "no"}});
  expectDenied("The permission store of the session denies the microphone.");
}

}  // namespace
}  // namespace vek::test
