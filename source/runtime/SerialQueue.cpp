// SPDX-License-Identifier: MIT
#include "runtime/SerialQueue.hpp"

#include <pthread.h>

#include <exception>
#include <future>

namespace vek {

SerialQueue::SerialQueue(std::string label)
    : label_(std::move(label)), thread_([this] { run(); }) {}

SerialQueue::~SerialQueue() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void SerialQueue::post(UniqueFunction<void()> work) {
  {
    std::lock_guard lock(mutex_);
    work_.push_back(std::move(work));
  }
  wake_.notify_one();
}

void SerialQueue::sync(UniqueFunction<void()> work) {
  std::packaged_task<void()> task([&work] { work(); });
  auto done = task.get_future();
  post([&task] { task(); });
  done.get();
}

void SerialQueue::run() {
  pthread_setname_np(pthread_self(), label_.substr(0, 15).c_str());
  std::unique_lock lock(mutex_);
  while (true) {
    wake_.wait(lock, [this] { return stopping_ || !work_.empty(); });
    if (work_.empty()) return;
    auto work = std::move(work_.front());
    work_.pop_front();
    lock.unlock();
    work();
    work = nullptr;
    lock.lock();
  }
}

}  // namespace vek
