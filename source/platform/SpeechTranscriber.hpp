// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/SpeechModels.hpp"
#include "platform/SpeechRecognizer.hpp"
#include "platform/SpeechResampler.hpp"
#include "platform/UtteranceSegmenter.hpp"

namespace vek {

/// The way of one recognition task from audio to results. The models do not stream: an utterance
/// is transcribed again and again while it grows, and its text is settled at the pause after it.
/// Used by one thread at a time.
class SpeechTranscriber {
 public:
  /// Whether more audio waits already. If so, results that only show the progress are skipped.
  enum class Pace : std::uint8_t { keepsUp, isBehind };

  explicit SpeechTranscriber(SpeechRecognitionResultHandler resultHandler)
      : resultHandler_(std::move(resultHandler)) {}

  /// Takes the next buffer and hands on what comes of it. Throws what the models throw.
  void process(SpeechModels& models, AudioPCMBuffer const& buffer, Pace pace,
               std::stop_token const& stop);

  /// Settles what is under way and hands on the final result.
  void finish(SpeechModels& models, std::stop_token const& stop);

  /// Hands on the error. Nothing comes after it.
  void fail(std::exception_ptr const& error);

 private:
  using Clock = std::chrono::steady_clock;

  void processFrame(SpeechModels& models, SpeechFrame frame, Pace pace,
                    std::stop_token const& stop);
  [[nodiscard]] bool isDue() const;
  void transcribe(SpeechModels& models, std::stop_token const& stop);
  void showProgress(SpeechModels& models, std::stop_token const& stop);
  [[nodiscard]] SpeechRecognitionResult settle(SpeechModels& models, std::stop_token const& stop);
  void beginNextText();

  SpeechRecognitionResultHandler resultHandler_;
  SpeechResampler resampler_;
  std::vector<float> samples_;  // less than a frame between two buffers
  VoiceActivity activity_;
  UtteranceSegmenter segmenter_;
  std::string text_;                   // of the utterance under way
  std::size_t transcribedLength_ = 0;  // samples of it that the text is for
  std::string shown_;
  std::chrono::duration<double> cost_{};  // of the last transcription
  bool hasEnded_ = false;
};

}  // namespace vek
