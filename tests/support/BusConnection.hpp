// SPDX-License-Identifier: MIT
#pragma once

#include <systemd/sd-bus.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace vek::test {

using BusConnection = std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)>;

/// To the bus at that address. Throws std::runtime_error when it is not there.
inline BusConnection connectTo(std::string const& address) {
  sd_bus* bus = nullptr;
  bool const isUp = sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address.c_str()) >= 0 &&
                    sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_start(bus) >= 0;
  BusConnection connection(bus, &sd_bus_flush_close_unref);
  if (!isUp) throw std::runtime_error("no connection to the session bus");
  return connection;
}

}  // namespace vek::test
