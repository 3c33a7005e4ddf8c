// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace vek::test {

/// What happened, in its order, written by any thread.
class Journal {
 public:
  void add(std::string entry) {
    std::lock_guard const lock(mutex_);
    entries_.push_back(std::move(entry));
  }
  [[nodiscard]] std::vector<std::string> entries() const {
    std::lock_guard const lock(mutex_);
    return entries_;
  }
  [[nodiscard]] std::ptrdiff_t count(std::string const& entry) const {
    return std::ranges::count(entries(), entry);
  }
  [[nodiscard]] bool contains(std::string const& entry) const { return count(entry) > 0; }
  /// Whether the entry comes to stand there `number` times in good time.
  [[nodiscard]] bool waitFor(std::string const& entry, std::ptrdiff_t number = 1) const;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> entries_;
};

/// Whether `condition` comes true within `limit`; it is asked again and again.
inline bool eventually(std::function<bool()> const& condition,
                       std::chrono::milliseconds limit = std::chrono::seconds(10)) {
  auto const deadline = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

inline bool Journal::waitFor(std::string const& entry, std::ptrdiff_t number) const {
  return eventually([&] { return count(entry) >= number; });
}

}  // namespace vek::test
