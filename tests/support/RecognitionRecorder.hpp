// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/SpeechRecognizer.hpp"

namespace vek::test {

/// Keeps what a recognition task gives, with the time of each.
class RecognitionRecorder {
 public:
  using Clock = std::chrono::steady_clock;

  struct Entry {
    Clock::time_point time;
    std::optional<SpeechRecognitionResult> result;
    std::exception_ptr error;
  };

  [[nodiscard]] SpeechRecognitionResultHandler handler() {
    return [state = state_](auto const& result, auto const& error) {
      std::lock_guard const lock(state->mutex);
      state->entries.push_back({Clock::now(), result, error});
      state->changed.notify_all();
    };
  }

  [[nodiscard]] std::vector<Entry> entries() const {
    std::lock_guard const lock(state_->mutex);
    return state_->entries;
  }

  /// Whether the final result or an error comes in time.
  [[nodiscard]] bool waitForEnd(std::chrono::seconds time = std::chrono::seconds(240)) const {
    return wait(time, [](Entry const& entry) {
      return entry.error != nullptr || (entry.result && entry.result->isFinal);
    });
  }

  /// Whether a settled result comes in time.
  [[nodiscard]] bool waitForSettled(std::chrono::seconds time = std::chrono::seconds(240)) const {
    return wait(time, [](Entry const& entry) {
      return entry.result && entry.result->speechRecognitionMetadata;
    });
  }

  /// The settled texts, with a space between them.
  [[nodiscard]] std::string settledText() const {
    std::string text;
    for (Entry const& entry : entries()) {
      if (!entry.result || !entry.result->speechRecognitionMetadata) continue;
      if (!text.empty()) text += ' ';
      text += entry.result->bestTranscription.formattedString;
    }
    return text;
  }

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Entry> entries;
  };

  template <class Predicate>
  bool wait(std::chrono::seconds time, Predicate predicate) const {
    std::unique_lock lock(state_->mutex);
    return state_->changed.wait_for(
        lock, time, [&] { return std::ranges::any_of(state_->entries, predicate); });
  }

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace vek::test
