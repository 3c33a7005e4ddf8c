// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "platform/SpeechModels.hpp"

namespace vek::test {

/// Audio in which "word 7" is a stretch of a level that means 7, and models that read it back: so
/// a test sees which words got lost, came twice or were cut.
class SpokenWords {
 public:
  SpokenWords& silence(double seconds) { return append(0, seconds); }
  SpokenWords& word(int number, double seconds = 0.3) {
    append(static_cast<std::int16_t>(levelOf(number)), seconds);
    return silence(0.1);
  }
  SpokenWords& words(int first, int last) {
    for (int number = first; number <= last; ++number) word(number);
    return *this;
  }

  [[nodiscard]] std::vector<std::int16_t> const& samples() const { return samples_; }

  /// "first ... last" as the models write it.
  static std::string text(int first, int last) {
    std::string text;
    for (int number = first; number <= last; ++number) {
      text += (number == first ? "w" : " w") + std::to_string(number);
    }
    return text;
  }

  static int levelOf(int number) { return 8000 + number * 100; }

 private:
  SpokenWords& append(std::int16_t level, double seconds) {
    samples_.insert(samples_.end(), static_cast<std::size_t>(seconds * speechSampleRate), level);
    return *this;
  }

  std::vector<std::int16_t> samples_;
};

struct ScriptedSpeechModels : SpeechModels {
  /// Called with the number of transcriptions so far, before each.
  std::function<void(int)> beforeTranscription = [](int) {};
  std::atomic<int>* transcriptions = nullptr;

  float speechProbability(VoiceActivity&, SpeechFrame frame) override {
    return std::ranges::any_of(frame, [](float sample) { return sample > 0.2F; }) ? 0.9F : 0.1F;
  }

  std::string transcribe(std::span<float const> utterance, std::stop_token const&) override {
    beforeTranscription(count_++);
    if (transcriptions != nullptr) ++*transcriptions;
    std::string text;
    float last = 0;
    for (float const sample : utterance) {
      if (sample > 0.2F && sample != last) {
        if (!text.empty()) text += ' ';
        text += 'w' + std::to_string((std::lround(sample * 32768) - 8000) / 100);
      }
      last = sample;
    }
    return text;
  }

 private:
  int count_ = 0;
};

}  // namespace vek::test
