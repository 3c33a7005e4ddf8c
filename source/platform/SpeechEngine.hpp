// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

#include "platform/SpeechModels.hpp"
#include "runtime/UniqueFunction.hpp"

namespace vek {

/// One thread with the speech models: it loads them when work comes, and gives their memory back
/// when none has come for a while. Work that comes while they are loaded waits its turn.
class SpeechEngine {
 public:
  using Load = std::function<std::unique_ptr<SpeechModels>()>;

  struct Work {
    UniqueFunction<void(SpeechModels&, std::stop_token const&)> run;
    /// Called in its place if the models cannot be loaded, or with what it throws.
    UniqueFunction<void(std::exception_ptr const&)> fail;
  };

  SpeechEngine(Load load, std::chrono::milliseconds keepFor);
  SpeechEngine(SpeechEngine const&) = delete;
  SpeechEngine& operator=(SpeechEngine const&) = delete;
  ~SpeechEngine();

  /// Has the work run after what was posted before it. Any thread may post.
  void post(Work work);

  /// Ends the thread, and the work under way early; what waits is dropped. Not to be called by
  /// the work itself.
  void stop();

 private:
  void run(std::stop_token const& stop);
  bool waitForWork(std::stop_token const& stop);
  void perform(Work& work, std::stop_token const& stop);
  void releaseModels();

  Load load_;
  std::chrono::milliseconds keepFor_;
  std::unique_ptr<SpeechModels> models_;  // of the thread
  std::mutex mutex_;
  std::condition_variable_any wake_;
  std::deque<Work> waiting_;
  std::jthread thread_;
};

}  // namespace vek
