// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "platform/NotificationRequest.hpp"
#include "platform/SessionBusCall.hpp"

namespace vek {

/// Talks to the session's notification daemon, and waits for its answers. One thread at a time.
class DesktopNotifications {
 public:
  void show(NotificationRequest const& request);
  /// Does nothing for one that is not shown.
  void withdraw(std::string const& identifier);

 private:
  /// A notification as the daemon that shows it knows it. Another daemon means another by the same
  /// number.
  struct Shown {
    std::string daemon;
    std::uint32_t number = 0;
  };

  /// The bus, opened when it is first needed and again when it was lost; null when there is none.
  sd_bus* bus();

  SessionBus bus_;
  std::map<std::string, Shown> shown_;
};

}  // namespace vek
