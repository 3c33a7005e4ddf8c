// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/OnnxRuntime.hpp"
#include "platform/SpeechVocabulary.hpp"

namespace vek {

/// An English speech-to-text model: an encoder over a whole utterance, and a decoder that writes
/// one piece of text after the other. It writes the likeliest piece each time.
class MoonshineModel {
 public:
  /// Reads the model's two files. Throws OnnxError.
  MoonshineModel(std::shared_ptr<OnnxRuntime const> runtime, std::filesystem::path const& encoder,
                 std::filesystem::path const& decoder, SpeechVocabulary vocabulary);

  /// What is said in an utterance of 16 kHz mono audio. Takes about a twelfth of the audio's
  /// duration on one core; a stop ends it early, with the text so far. Throws OnnxError.
  [[nodiscard]] std::string transcribe(std::span<float const> audio,
                                       std::stop_token const& stop) const;

 private:
  [[nodiscard]] OnnxTensor encode(std::span<float const> audio) const;

  OnnxSession encoder_;
  OnnxSession decoder_;
  SpeechVocabulary vocabulary_;
  std::vector<std::string> inputNames_;
  std::vector<std::string> firstOutputNames_;
  std::vector<std::string> laterOutputNames_;
};

}  // namespace vek
