// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <string>

namespace vek::services {

/// Slows down those who guess. After a few failures under one key (an account, an address) each
/// further one makes the next attempt wait twice as long, up to five minutes. An hour without a
/// failure is forgiven. For one thread at a time.
class AttemptLimiter {
 public:
  using Time = std::chrono::steady_clock::time_point;

  explicit AttemptLimiter(int freeFailures) : freeFailures_(freeFailures) {}

  /// How long the next attempt has to wait; nothing when it need not.
  [[nodiscard]] std::chrono::seconds wait(std::string const& key, Time now) const;

  void failed(std::string const& key, Time now);
  void succeeded(std::string const& key) { failures_.erase(key); }

 private:
  struct Failures {
    int count = 0;
    Time last;
  };
  int freeFailures_;
  std::map<std::string, Failures> failures_;
};

}  // namespace vek::services
