// SPDX-License-Identifier: MIT
#include "platform/OnnxSpeechModels.hpp"

#include "platform/MoonshineModel.hpp"
#include "platform/VoiceActivityDetector.hpp"

namespace vek {
namespace {

class OnnxSpeechModels final : public SpeechModels {
 public:
  explicit OnnxSpeechModels(SpeechModelFiles const& files)
      : OnnxSpeechModels(std::make_shared<OnnxRuntime const>(files.path(SpeechModelFiles::engine)),
                         files) {}

  float speechProbability(VoiceActivity& activity, SpeechFrame frame) override {
    return detector_.speechProbability(activity, frame);
  }

  std::string transcribe(std::span<float const> utterance, std::stop_token const& stop) override {
    return model_.transcribe(utterance, stop);
  }

 private:
  OnnxSpeechModels(std::shared_ptr<OnnxRuntime const> const& runtime, SpeechModelFiles const& files)
      : detector_(runtime, files.path(SpeechModelFiles::detector)),
        model_(runtime, files.path(SpeechModelFiles::encoder),
               files.path(SpeechModelFiles::decoder),
               SpeechVocabulary(files.path(SpeechModelFiles::vocabulary))) {}

  VoiceActivityDetector detector_;
  MoonshineModel model_;
};

}  // namespace

std::unique_ptr<SpeechModels> loadOnnxSpeechModels(SpeechModelFiles const& files) {
  // Also because the engine is code: it is not run before it is known to be the right one.
  files.verify();
  try {
    return std::make_unique<OnnxSpeechModels>(files);
  } catch (std::exception const& error) {
    throw SpeechModelError(std::string("The speech models cannot be loaded: ") + error.what());
  }
}

}  // namespace vek
