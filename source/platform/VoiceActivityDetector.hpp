// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/OnnxRuntime.hpp"
#include "platform/SpeechModels.hpp"

namespace vek {

/// Tells speech from other sound, frame by frame.
class VoiceActivityDetector {
 public:
  /// Reads the model. Throws OnnxError.
  VoiceActivityDetector(std::shared_ptr<OnnxRuntime const> runtime,
                        std::filesystem::path const& model)
      : session_(std::move(runtime), model) {}

  /// How probable it is, from 0 to 1, that somebody speaks in the next frame. Throws OnnxError.
  [[nodiscard]] float speechProbability(VoiceActivity& activity, SpeechFrame frame) const;

 private:
  OnnxSession session_;
  std::array<std::string, 3> inputNames_{"input", "state", "sr"};
  std::array<std::string, 2> outputNames_{"output", "stateN"};
};

}  // namespace vek
