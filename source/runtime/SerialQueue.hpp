// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

#include "runtime/Executor.hpp"

namespace vek {

/// One thread that runs what is posted to it, in order. Work that still waits when the queue is
/// destroyed is run first.
class SerialQueue final : public Executor {
 public:
  /// `label` names the thread in debuggers (the system keeps its first 15 characters).
  explicit SerialQueue(std::string label);
  ~SerialQueue() override;

  void post(UniqueFunction<void()> work) override;

  /// Runs `work` on the queue and returns when it has run; what it throws is thrown here.
  /// Must not be called on the queue itself.
  void sync(UniqueFunction<void()> work);

  [[nodiscard]] bool isCurrent() const { return std::this_thread::get_id() == thread_.get_id(); }

 private:
  void run();

  std::string label_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<UniqueFunction<void()>> work_;
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace vek
