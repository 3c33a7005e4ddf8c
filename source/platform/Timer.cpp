// SPDX-License-Identifier: MIT
#include "platform/Timer.hpp"

#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <utility>

namespace vek {
namespace {

void waitAndRun(std::stop_token const& stop, std::chrono::milliseconds delay,
                std::function<void()> const& action) {
  std::mutex mutex;
  std::condition_variable_any wake;
  std::unique_lock lock(mutex);
  wake.wait_for(lock, stop, delay, [] { return false; });
  if (!stop.stop_requested()) action();
}

}  // namespace

Timer::Timer(std::chrono::milliseconds delay, std::function<void()> action)
    : thread_([delay, action = std::move(action)](std::stop_token const& stop) {
        waitAndRun(stop, delay, action);
      }) {}

Timer::~Timer() {
  thread_.request_stop();
  if (thread_.get_id() == std::this_thread::get_id()) thread_.detach();
}

}  // namespace vek
