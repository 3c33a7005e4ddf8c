// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "support/SoundServer.hpp"

namespace vek::test {

/// A microphone of a sound server, in a quiet room in which a test speaks as fast as people do.
class LiveMicrophone {
 public:
  static constexpr int rate = 16000;

  LiveMicrophone(SoundServer const& server, std::string const& name) {
    server.loadPipeMicrophone(name, rate, 1);
    thread_ = std::jthread([this, path = server.path(name)](std::stop_token const& stop) {
      MicrophonePipe const pipe(path);
      auto next = std::chrono::steady_clock::now();
      while (!stop.stop_requested()) {
        pipe.offer(nextBlock());
        next += std::chrono::milliseconds(20);
        std::this_thread::sleep_until(next);
      }
    });
  }

  /// Returns before it has been said.
  void say(std::vector<std::int16_t> const& samples) {
    std::lock_guard lock(mutex_);
    speech_.insert(speech_.end(), samples.begin(), samples.end());
  }

 private:
  std::vector<std::int16_t> nextBlock() {
    std::vector<std::int16_t> block(rate / 50);
    std::lock_guard lock(mutex_);
    for (auto& sample : block) {
      if (speech_.empty()) break;
      sample = speech_.front();
      speech_.pop_front();
    }
    return block;
  }

  std::mutex mutex_;
  std::deque<std::int16_t> speech_;
  std::jthread thread_;
};

}  // namespace vek::test
