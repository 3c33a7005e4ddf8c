// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <stop_token>
#include <string>

namespace vek {

/// Samples a second of all audio that the models take: mono, from -1 to 1.
inline constexpr std::size_t speechSampleRate = 16000;
/// The step in which speech is told from other sound: 32 ms.
inline constexpr std::size_t speechFrameLength = 512;

using SpeechFrame = std::span<float const, speechFrameLength>;

/// What the detector of speech remembers of one stream of audio between two frames.
struct VoiceActivity {
  std::array<float, 256> state{};
  std::array<float, 64> context{};
};

/// The models that a recognition needs. Called by one thread at a time; an error thrown means
/// that they are of no use any more.
class SpeechModels {
 public:
  SpeechModels() = default;
  SpeechModels(SpeechModels const&) = delete;
  SpeechModels& operator=(SpeechModels const&) = delete;
  virtual ~SpeechModels() = default;

  /// How probable it is, from 0 to 1, that somebody speaks in the next frame of a stream.
  virtual float speechProbability(VoiceActivity& activity, SpeechFrame frame) = 0;

  /// What is said in an utterance; empty if nothing is. A stop ends it early.
  virtual std::string transcribe(std::span<float const> utterance, std::stop_token const& stop) = 0;
};

}  // namespace vek
