// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "support/ChildProcess.hpp"

namespace vek::test {

/// A notification daemon on a session bus that writes down what it is asked.
class NotificationDaemon {
 public:
  /// Throws std::runtime_error when it does not come up.
  explicit NotificationDaemon(std::string const& busAddress);

  /// The next call, such as `CloseNotification 1`; nothing when none comes in time.
  [[nodiscard]] std::optional<std::string> nextCall(
      std::chrono::milliseconds limit = std::chrono::seconds(20));

 private:
  ChildProcess process_;
};

}  // namespace vek::test
