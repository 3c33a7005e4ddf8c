// SPDX-License-Identifier: MIT
// What a terminal asks of the desktop program.
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <filesystem>
#include <stdexcept>

#include "app/Commands.hpp"
#include "platform/Autostart.hpp"
#include "platform/RemoteApplication.hpp"
#include "platform/UpdateSettings.hpp"
#include "platform/UserDefaults.hpp"

namespace vek {

namespace {

/// The desktop program, which is installed beside this one.
std::filesystem::path desktopProgram() {
  auto program = std::filesystem::read_symlink("/proc/self/exe").replace_filename("vek");
  if (!std::filesystem::exists(program)) {
    throw std::runtime_error("There is no " + program.string() + " to start.");
  }
  return program;
}

void printChoice(char const* name, bool isOn, bool asJSON, Terminal& terminal) {
  terminal.printLine(asJSON ? boost::json::serialize(boost::json::object{{name, isOn}})
                            : std::string(isOn ? "on" : "off"));
}

}  // namespace

int toggle() {
  RemoteApplication const program(RemoteApplication::Start::ifNeeded);
  if (program.activateAction("toggle-recording")) return 0;
  throw std::runtime_error("VEK does not run on this desktop.");
}

int autostart(CommandLine::Autostart const& options, bool asJSON, Terminal& terminal) {
  if (options.isWanted) *options.isWanted ? startAtLogin(desktopProgram()) : doNotStartAtLogin();
  printChoice("autostart", isAutostarted(), asJSON, terminal);
  return 0;
}

int updates(CommandLine::Updates const& options, bool asJSON, Terminal& terminal) {
  UpdateSettings const settings(UserDefaults::standard());
  if (options.isWanted) settings.setAutomaticallyChecksForUpdates(*options.isWanted);
  bool const isOn = settings.automaticallyChecksForUpdates();
  printChoice("updates", isOn, asJSON, terminal);
  return options.isWanted.value_or(isOn) == isOn ? 0 : 1;
}

}  // namespace vek
