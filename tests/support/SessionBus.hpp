// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <string>

#include "support/TemporaryFolder.hpp"

namespace vek::test {

/// A session bus of its own, with no service but those that the test puts there. It ends with this
/// object, and with the thread that made it.
class SessionBus {
 public:
  /// Throws std::runtime_error when it does not come up.
  SessionBus();
  SessionBus(SessionBus const&) = delete;
  SessionBus& operator=(SessionBus const&) = delete;
  ~SessionBus();

  /// In the form of DBUS_SESSION_BUS_ADDRESS.
  [[nodiscard]] std::string address() const { return "unix:path=" + (folder_ / "bus").string(); }

 private:
  TemporaryFolder folder_;
  pid_t pid_ = -1;
};

}  // namespace vek::test
