// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string_view>

#include "platform/Files.hpp"

namespace vek {

/// The right to read an item of the keychain, make a new one of it and store that, which one
/// program of the user has at a time. It ends with this object, and with the process.
class KeychainLock {
 public:
  /// Waits at most `limit`. Reads afterwards find what others have stored before. Throws
  /// std::system_error, std::errc::timed_out when others did not end.
  KeychainLock(std::string_view item, std::chrono::milliseconds limit);

 private:
  FileLock lock_;
};

}  // namespace vek
