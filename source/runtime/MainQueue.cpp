// SPDX-License-Identifier: MIT
#include "runtime/MainQueue.hpp"

#include <utility>

namespace vek {

MainQueue& MainQueue::shared() {
  static auto& queue = *new MainQueue();
  return queue;
}

void MainQueue::post(UniqueFunction<void()> work) {
  std::function<void()> handler;
  {
    std::lock_guard lock(mutex_);
    if (work_.empty()) handler = wakeHandler_;
    work_.push_back(std::move(work));
    woken_ = true;
  }
  wake_.notify_one();
  if (handler) handler();
}

void MainQueue::runOrPost(UniqueFunction<void()> work) {
  if (isMainThread()) {
    work();
  } else {
    post(std::move(work));
  }
}

std::size_t MainQueue::runPending(std::size_t bound) {
  std::size_t count = 0;
  std::unique_lock lock(mutex_);
  while (count < bound && !work_.empty()) {
    auto work = std::move(work_.front());
    work_.pop_front();
    lock.unlock();
    work();
    work = nullptr;
    ++count;
    lock.lock();
  }
  return count;
}

void MainQueue::runUntil(std::function<bool()> const& isDone, std::chrono::milliseconds interval) {
  while (!isDone()) {
    if (runPending(1) == 1) continue;
    std::unique_lock lock(mutex_);
    wake_.wait_for(lock, interval, [this] { return woken_ || !work_.empty(); });
    woken_ = false;
  }
}

void MainQueue::wake() {
  {
    std::lock_guard lock(mutex_);
    woken_ = true;
  }
  wake_.notify_one();
}

void MainQueue::setWakeHandler(std::function<void()> handler) {
  std::lock_guard lock(mutex_);
  wakeHandler_ = std::move(handler);
}

}  // namespace vek
