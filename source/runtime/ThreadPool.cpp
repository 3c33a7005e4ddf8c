// SPDX-License-Identifier: MIT
#include "runtime/ThreadPool.hpp"

#include <algorithm>
#include <utility>

namespace vek {

ThreadPool::ThreadPool(std::size_t threadCount) {
  threads_.reserve(threadCount);
  for (std::size_t i = 0; i < threadCount; ++i) {
    threads_.emplace_back([this] { run(); });
  }
}

ThreadPool::~ThreadPool() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_all();
  for (auto& thread : threads_) thread.join();
}

ThreadPool& ThreadPool::shared() {
  static ThreadPool pool(std::max<std::size_t>(4, std::thread::hardware_concurrency()));
  return pool;
}

void ThreadPool::post(UniqueFunction<void()> work) {
  {
    std::lock_guard lock(mutex_);
    work_.push_back(std::move(work));
  }
  wake_.notify_one();
}

void ThreadPool::run() {
  std::unique_lock lock(mutex_);
  while (true) {
    wake_.wait(lock, [this] { return stopping_ || !work_.empty(); });
    if (stopping_) return;
    auto work = std::move(work_.front());
    work_.pop_front();
    lock.unlock();
    work();
    work = nullptr;
    lock.lock();
  }
}

}  // namespace vek
