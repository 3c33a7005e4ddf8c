// SPDX-License-Identifier: MIT
#include "platform/SpeechResampler.hpp"

#include <speex/speex_resampler.h>

#include <cmath>
#include <stdexcept>

#include "platform/SpeechModels.hpp"

namespace vek {
namespace {

constexpr int quality = 6;
constexpr float fullScale = 32768;

std::vector<float> mixedDown(AudioPCMBuffer const& buffer) {
  std::size_t const channels = buffer.format().channelCount();
  std::vector<float> mono(buffer.frameLength());
  auto sample = buffer.samples().begin();
  for (float& value : mono) {
    float sum = 0;
    for (std::size_t channel = 0; channel < channels; ++channel)
      sum += static_cast<float>(*sample++);
    value = sum / (static_cast<float>(channels) * fullScale);
  }
  return mono;
}

}  // namespace

struct SpeechResampler::Converter {
  explicit Converter(double sampleRate) {
    int error = 0;
    state = speex_resampler_init(1, static_cast<spx_uint32_t>(std::lround(sampleRate)),
                                 speechSampleRate, quality, &error);
    if (state == nullptr) throw std::runtime_error(speex_resampler_strerror(error));
    speex_resampler_skip_zeros(state);
  }
  Converter(Converter const&) = delete;
  Converter& operator=(Converter const&) = delete;
  ~Converter() { speex_resampler_destroy(state); }

  SpeexResamplerState* state;
};

SpeechResampler::SpeechResampler() : sampleRate_(speechSampleRate) {}
SpeechResampler::~SpeechResampler() = default;

void SpeechResampler::prepare(double sampleRate) {
  if (sampleRate == sampleRate_) return;
  bool const isRight = std::lround(sampleRate) == speechSampleRate;
  converter_ = isRight ? nullptr : std::make_unique<Converter>(sampleRate);
  sampleRate_ = sampleRate;
}

void SpeechResampler::process(AudioPCMBuffer const& buffer, std::vector<float>& output) {
  prepare(buffer.format().sampleRate());
  std::vector<float> const mono = mixedDown(buffer);
  if (!converter_) {
    output.insert(output.end(), mono.begin(), mono.end());
    return;
  }
  auto const expected =
      std::ceil(static_cast<double>(mono.size()) * speechSampleRate / sampleRate_);
  std::vector<float> converted(static_cast<std::size_t>(expected) + 16);
  auto taken = static_cast<spx_uint32_t>(mono.size());
  auto made = static_cast<spx_uint32_t>(converted.size());
  speex_resampler_process_float(converter_->state, 0, mono.data(), &taken, converted.data(), &made);
  output.insert(output.end(), converted.begin(), converted.begin() + made);
}

}  // namespace vek
