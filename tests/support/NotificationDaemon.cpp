// SPDX-License-Identifier: MIT
#include "support/NotificationDaemon.hpp"

#include <systemd/sd-bus.h>

#include <memory>
#include <stdexcept>
#include <thread>

namespace vek::test {

namespace {

using namespace std::chrono_literals;
using Bus = std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)>;

constexpr auto name = "org.freedesktop.Notifications";

Bus connectTo(std::string const& address) {
  sd_bus* bus = nullptr;
  bool const isUp = sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address.c_str()) >= 0 &&
                    sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_start(bus) >= 0;
  Bus owned(bus, &sd_bus_flush_close_unref);
  if (!isUp) throw std::runtime_error("no connection to the session bus");
  return owned;
}

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
