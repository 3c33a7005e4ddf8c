// SPDX-License-Identifier: MIT
#include "windows/ScreenReader.hpp"

#include <csignal>

namespace vek::test {

ScreenReader::ScreenReader(Desktop& desktop) : desktop_(desktop) {
  desktop.environment.erase("NO_AT_BRIDGE");
  bus_ = desktop.start({"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"});
  desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1";
}

ScreenReader::~ScreenReader() {
  // Gently, so that it takes the bus with it that it has started.
  bus_->signal(SIGTERM);
  static_cast<void>(bus_->wait());
}

std::string ScreenReader::tree() const {
  return desktop_.run({"/usr/bin/python3", VEK_ACCESSIBLE, "tree"});
}

bool ScreenReader::shows(std::string const& thing) const {
  return eventually([&] { return ("\n" + tree()).find("\n" + thing + "\n") != std::string::npos; });
}

bool ScreenReader::reads(std::string const& words) const {
  return eventually([&] { return tree().find(words) != std::string::npos; });
}

bool ScreenReader::press(std::string const& name) const {
  return desktop_.start({"/usr/bin/python3", VEK_ACCESSIBLE, "press", name})->wait() == 0;
}

}  // namespace vek::test
