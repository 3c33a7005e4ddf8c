// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "runtime/Executor.hpp"

namespace vek {

/// A few threads for work that may block. Work still waiting when the pool goes is dropped.
class ThreadPool final : public Executor {
 public:
  explicit ThreadPool(std::size_t threadCount);
  ~ThreadPool() override;

  /// The pool of this process. Its threads end with the process's static objects.
  static ThreadPool& shared();

  void post(UniqueFunction<void()> work) override;

 private:
  void run();

  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<UniqueFunction<void()>> work_;
  bool stopping_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace vek
