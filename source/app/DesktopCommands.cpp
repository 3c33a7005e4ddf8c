// SPDX-License-Identifier: MIT
// What a terminal asks of the desktop program.
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <filesystem>
#include <stdexcept>

#include "app/Commands.hpp"
#include "platform/Autostart.hpp"
#include "platform/RemoteApplication.hpp"

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

}  // namespace

int toggle() {
  RemoteApplication const program(RemoteApplication::Start::ifNeeded);
  if (program.activateAction("toggle-recording")) return 0;
  throw std::runtime_error("VEK does not run on this desktop.");
}

int autostart(CommandLine::Autostart const& options, bool asJSON, Terminal& terminal) {
  if (options.isWanted) *options.isWanted ? startAtLogin(desktopProgram()) : doNotStartAtLogin();
  bool const isOn = isAutostarted();
  terminal.printLine(asJSON ? boost::json::serialize(boost::json::object{{"autostart", isOn}})
                            : std::string(isOn ? "on" : "off"));
  return 0;
}

}  // namespace vek
