// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>

namespace vek {

/// Counts pieces of work that have begun, for threads that wait until all have ended. Any thread
/// may call.
class DispatchGroup {
 public:
  void enter() {
    std::lock_guard const lock(mutex_);
    ++count_;
  }

  /// Once for each `enter`.
  void leave() {
    std::lock_guard const lock(mutex_);
    if (--count_ == 0) ended_.notify_all();
  }

  void wait() {
    std::unique_lock lock(mutex_);
    ended_.wait(lock, [this] { return count_ == 0; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable ended_;
  int count_ = 0;
};

}  // namespace vek
