// SPDX-License-Identifier: MIT
#include "support/NotificationDaemon.hpp"

#include <stdexcept>
#include <thread>

#include "support/BusConnection.hpp"

namespace vek::test {

namespace {

using namespace std::chrono_literals;

constexpr auto name = "org.freedesktop.Notifications";

}  // namespace

NotificationDaemon::NotificationDaemon(std::string const& busAddress)
    : process_({"env", "DBUS_SESSION_BUS_ADDRESS=" + busAddress, "/usr/bin/python3", "-u", "-m",
                "dbusmock", "--template", "notification_daemon"}) {
  auto const bus = connectTo(busAddress);
  auto const deadline = std::chrono::steady_clock::now() + 30s;
  while (sd_bus_get_name_creds(bus.get(), name, 0, nullptr) < 0) {
    if (std::chrono::steady_clock::now() > deadline) {
      throw std::runtime_error("the notification daemon did not come up");
    }
    std::this_thread::sleep_for(10ms);
  }
}

std::optional<std::string> NotificationDaemon::nextCall(std::chrono::milliseconds limit) {
  while (auto const line = process_.readLine(limit)) {
    // "TIME METHOD ARGUMENT…", and "TIME emit …" for what the daemon tells.
    auto const call = line->substr(line->find(' ') + 1);
    if (!call.starts_with("emit ")) return call;
  }
  return std::nullopt;
}

}  // namespace vek::test
