// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <limits>
#include <mutex>
#include <thread>

#include "runtime/Executor.hpp"

namespace vek {

/// The work of the main thread. A toolkit's event loop runs it from its own wake event; a program
/// without a screen runs it with `runUntil`.
class MainQueue final : public Executor {
 public:
  /// The one of this process, never released. The thread that asks first is the main thread.
  static MainQueue& shared();

  [[nodiscard]] bool isMainThread() const { return std::this_thread::get_id() == mainThread_; }

  void post(UniqueFunction<void()> work) override;

  /// Runs `work` at once on the main thread, and posts it from any other.
  void runOrPost(UniqueFunction<void()> work);

  /// Runs at most `bound` pieces of waiting work, so that a flood of it cannot starve an event
  /// loop. Returns how many it ran.
  std::size_t runPending(std::size_t bound = std::numeric_limits<std::size_t>::max());

  /// Runs work as it comes until `isDone`, which is asked after each piece of work, on `wake`, and
  /// at least each `interval`.
  void runUntil(std::function<bool()> const& isDone,
                std::chrono::milliseconds interval = std::chrono::hours(1));

  /// Makes `runUntil` ask again. Any thread.
  void wake();

  /// Called on the posting thread when work comes into the empty queue.
  void setWakeHandler(std::function<void()> handler);

 private:
  MainQueue() = default;

  std::thread::id const mainThread_ = std::this_thread::get_id();
  std::mutex mutex_;
  std::condition_variable wake_;
  bool woken_ = false;
  std::deque<UniqueFunction<void()>> work_;
  std::function<void()> wakeHandler_;
};

}  // namespace vek
