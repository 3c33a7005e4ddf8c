// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/SpeechModels.hpp"

namespace vek {

/// Cuts a stream of audio into utterances: stretches of speech with some audio before them, which
/// end at a pause or, where nobody pauses, at the quietest recent moment.
class UtteranceSegmenter {
 public:
  enum class Event : std::uint8_t {
    /// Nothing has come that changes what is to be recognised.
    silence,
    /// The utterance has grown by a frame of speech.
    speech,
    /// The utterance will be complete as it stands if the silence lasts.
    pause,
    /// The utterance is complete; it can be read until the next frame is added.
    end,
  };

  UtteranceSegmenter();

  /// Takes the next frame and how probable it is that somebody speaks in it.
  Event add(SpeechFrame frame, float speechProbability);

  /// Ends the utterance that is under way; tells whether there is one.
  bool finish();

  /// The audio of the utterance, with little of the silence at its end.
  [[nodiscard]] std::span<float const> utterance() const;

  /// Where the first word of the utterance begins in the stream. Asked only of an utterance.
  [[nodiscard]] std::chrono::milliseconds speechStart() const;
  /// The time from there to the end of its last word.
  [[nodiscard]] std::chrono::milliseconds speechDuration() const;
  /// Whether the silence after the last word is long enough to end the utterance.
  [[nodiscard]] bool hasPaused() const;

 private:
  [[nodiscard]] bool isUtterance() const;
  [[nodiscard]] std::size_t quietestMoment() const;
  void beginAnew();
  void forget();
  Event endAt(std::size_t length);

  std::vector<float> samples_;             // the utterance under way, or what has just been heard
  std::vector<std::size_t> speechFrames_;  // where in there frames of speech begin
  std::size_t silentFrames_ = 0;           // since the last of them
  std::size_t complete_ = 0;               // samples of an utterance that has ended
  std::uint64_t received_ = 0;             // samples of the stream
  bool isSpeaking_ = false;
  bool wasSplit_ = false;
};

}  // namespace vek
