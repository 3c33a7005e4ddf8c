// SPDX-License-Identifier: MIT
#include "platform/SpeechEngine.hpp"

#include <malloc.h>

#include <utility>

namespace vek {

SpeechEngine::SpeechEngine(Load load, std::chrono::milliseconds keepFor)
    : load_(std::move(load)),
      keepFor_(keepFor),
      thread_([this](std::stop_token const& stop) { run(stop); }) {}

SpeechEngine::~SpeechEngine() {
  stop();
}

void SpeechEngine::stop() {
  thread_.request_stop();
  if (thread_.joinable()) thread_.join();
  // What waits may hold the last reference to objects that post: it goes outside of the lock.
  std::deque<Work> dropped;
  std::lock_guard const lock(mutex_);
  dropped.swap(waiting_);
}

void SpeechEngine::post(Work work) {
  {
    std::lock_guard const lock(mutex_);
    if (thread_.get_stop_source().stop_requested()) return;
    waiting_.push_back(std::move(work));
  }
  wake_.notify_one();
}

void SpeechEngine::run(std::stop_token const& stop) {
  while (!stop.stop_requested()) {
    if (!waitForWork(stop)) {
      releaseModels();
      continue;
    }
    std::unique_lock lock(mutex_);
    Work work = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    perform(work, stop);
  }
  models_.reset();
}

/// False if none has come for so long that the models are better given back.
bool SpeechEngine::waitForWork(std::stop_token const& stop) {
  std::unique_lock lock(mutex_);
  auto const hasWork = [this] { return !waiting_.empty(); };
  if (models_) return wake_.wait_for(lock, stop, keepFor_, hasWork);
  return wake_.wait(lock, stop, hasWork);
}

void SpeechEngine::perform(Work& work, std::stop_token const& stop) {
  try {
    if (!models_) models_ = load_();
    work.run(*models_, stop);
  } catch (...) {
    releaseModels();
    work.fail(std::current_exception());
  }
}

void SpeechEngine::releaseModels() {
  if (!models_) return;
  models_.reset();
  // Without this the allocator would keep most of it for the process.
  ::malloc_trim(0);
}

}  // namespace vek
