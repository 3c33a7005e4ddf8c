// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>

struct sd_bus;
struct sd_bus_message;

namespace vek {

// How the sources of this room talk to the session bus.

struct CloseSessionBus {
  void operator()(sd_bus* bus) const;
};
using SessionBus = std::unique_ptr<sd_bus, CloseSessionBus>;

struct FreeSessionBusMessage {
  void operator()(sd_bus_message* message) const;
};
using SessionBusMessage = std::unique_ptr<sd_bus_message, FreeSessionBusMessage>;

/// A connection of its own; null without a session bus.
[[nodiscard]] SessionBus openSessionBus();

/// The answer to a call, which may be an error; null when none comes in time.
[[nodiscard]] SessionBusMessage callWithin(sd_bus* bus, sd_bus_message* call,
                                           std::chrono::milliseconds patience);

}  // namespace vek
