// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

#include "runtime/TaskHandle.hpp"

namespace vek {

/// Runs `task` on the calling thread and returns its value or throws its error. For threads that
/// may block, and for tests.
template <class T>
T syncWait(Task<T> task) {
  struct Loop final : Executor {
    void post(UniqueFunction<void()> work) override {
      std::lock_guard lock(mutex);
      waiting.push_back(std::move(work));
      wake.notify_one();
    }
    void runOne() {
      std::unique_lock lock(mutex);
      wake.wait(lock, [this] { return !waiting.empty(); });
      auto work = std::move(waiting.front());
      waiting.pop_front();
      lock.unlock();
      work();
    }
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<UniqueFunction<void()>> waiting;
  };

  Loop loop;
  std::optional<Result<T>> outcome;
  auto run = [](Task<T> work, std::optional<Result<T>>& place) -> Task<> {
    place.emplace(co_await attempt(std::move(work)));
  };
  auto const handle = spawn(loop, run(std::move(task), outcome));
  while (!outcome || !handle.isDone()) loop.runOne();
  return std::move(*outcome).value();
}

}  // namespace vek
