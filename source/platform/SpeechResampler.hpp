// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "platform/AudioPCMBuffer.hpp"

namespace vek {

/// Makes the audio that the speech models take, 16 kHz mono from -1 to 1, of a stream of captured
/// buffers, whose format may change on the way.
class SpeechResampler {
 public:
  SpeechResampler();
  SpeechResampler(SpeechResampler const&) = delete;
  SpeechResampler& operator=(SpeechResampler const&) = delete;
  ~SpeechResampler();

  /// Appends the buffer's audio to `output`. Throws std::runtime_error if its rate is none.
  void process(AudioPCMBuffer const& buffer, std::vector<float>& output);

 private:
  struct Converter;

  void prepare(double sampleRate);

  std::unique_ptr<Converter> converter_;  // null while the rate is right as it is
  double sampleRate_;
};

}  // namespace vek
