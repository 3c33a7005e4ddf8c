// SPDX-License-Identifier: MIT
#include "platform/VoiceActivityDetector.hpp"

#include <algorithm>

namespace vek {

float VoiceActivityDetector::speechProbability(VoiceActivity& activity, SpeechFrame frame) const {
  constexpr std::size_t contextLength = std::tuple_size_v<decltype(activity.context)>;
  // The model hears the end of the frame before, too.
  std::array<float, contextLength + speechFrameLength> input{};
  std::ranges::copy(activity.context, input.begin());
  std::ranges::copy(frame, input.begin() + contextLength);
  std::ranges::copy(frame.last<contextLength>(), activity.context.begin());

  constexpr std::array<std::int64_t, 1> sampleRate{speechSampleRate};
  OnnxRuntime const& runtime = session_.runtime();
  OnnxTensor const audio(runtime, input, {1, input.size()});
  OnnxTensor const state(runtime, activity.state, {2, 1, 128});
  OnnxTensor const rate(runtime, sampleRate, {});
  std::array<OnnxTensor const*, 3> const inputs{&audio, &state, &rate};

  auto const outputs = session_.run(inputNames_, inputs, outputNames_);
  std::ranges::copy(outputs[1].floats(), activity.state.begin());
  return outputs[0].floats()[0];
}

}  // namespace vek
