// SPDX-License-Identifier: MIT
#include "platform/SessionBusCall.hpp"

#include <systemd/sd-bus.h>

#include <cerrno>

namespace vek {

namespace {

using Clock = std::chrono::steady_clock;

int keepReply(sd_bus_message* reply, void* place, sd_bus_error*) {
  static_cast<SessionBusMessage*>(place)->reset(sd_bus_message_ref(reply));
  return 0;
}

}  // namespace

void CloseSessionBus::operator()(sd_bus* bus) const {
  // Not flushed: that would wait for a bus that does not answer.
  sd_bus_close_unref(bus);
}

void FreeSessionBusMessage::operator()(sd_bus_message* message) const {
  sd_bus_message_unref(message);
}

SessionBus openSessionBus() {
  sd_bus* opened = nullptr;
  return SessionBus(sd_bus_open_user(&opened) < 0 ? nullptr : opened);
}

SessionBusMessage callWithin(sd_bus* bus, sd_bus_message* call,
                             std::chrono::milliseconds patience) {
  SessionBusMessage reply;
  sd_bus_slot* slot = nullptr;
  if (sd_bus_call_async(bus, &slot, call, &keepReply, &reply, 0) < 0) return reply;
  // An answer that comes too late has no place any more.
  std::unique_ptr<sd_bus_slot, decltype(&sd_bus_slot_unref)> const pending(slot,
                                                                           &sd_bus_slot_unref);
  // A call that waits by itself would not count the time that a bus takes to let us in.
  auto const deadline = Clock::now() + patience;
  while (!reply) {
    int const processed = sd_bus_process(bus, nullptr);
    if (processed < 0) break;
    if (processed > 0) continue;
    auto const left =
        std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
    if (left.count() <= 0) break;
    int const waited = sd_bus_wait(bus, static_cast<std::uint64_t>(left.count()));
    if (waited < 0 && waited != -EINTR) break;
  }
  return reply;
}

}  // namespace vek
