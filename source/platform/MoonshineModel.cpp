// SPDX-License-Identifier: MIT
#include "platform/MoonshineModel.hpp"

#include <algorithm>
#include <array>

namespace vek {
namespace {

constexpr int layers = 8;
constexpr std::int64_t heads = 8;
constexpr std::int64_t headSize = 52;
constexpr std::int64_t startToken = 1;
constexpr std::int64_t endToken = 2;
constexpr double sampleRate = 16000;
// Nobody speaks faster; a decoder that goes on has begun to repeat itself.
constexpr double tokensPerSecond = 6.5;

// A layer's caches in their order: two that grow with the text, two of the audio.
constexpr std::array<char const*, 4> cacheNames{"decoder.key", "decoder.value", "encoder.key",
                                                "encoder.value"};
constexpr std::size_t growingCaches = 2;

std::string cacheName(char const* prefix, int layer, char const* name) {
  return prefix + ('.' + std::to_string(layer)) + '.' + name;
}

std::int64_t likeliest(OnnxTensor const& logits) {
  auto const values = logits.floats();
  return std::ranges::max_element(values) - values.begin();
}

}  // namespace

MoonshineModel::MoonshineModel(std::shared_ptr<OnnxRuntime const> runtime,
                               std::filesystem::path const& encoder,
                               std::filesystem::path const& decoder, SpeechVocabulary vocabulary)
    : encoder_(runtime, encoder),
      decoder_(runtime, decoder),
      vocabulary_(std::move(vocabulary)),
      inputNames_{"input_ids", "encoder_hidden_states", "use_cache_branch"},
      firstOutputNames_{"logits"},
      laterOutputNames_{"logits"} {
  for (int layer = 0; layer < layers; ++layer) {
    for (std::size_t kind = 0; kind < cacheNames.size(); ++kind) {
      inputNames_.push_back(cacheName("past_key_values", layer, cacheNames[kind]));
      firstOutputNames_.push_back(cacheName("present", layer, cacheNames[kind]));
      if (kind < growingCaches) laterOutputNames_.push_back(firstOutputNames_.back());
    }
  }
}

OnnxTensor MoonshineModel::encode(std::span<float const> audio) const {
  std::array<std::string, 1> const inputNames{"input_values"};
  std::array<std::string, 1> const outputNames{"last_hidden_state"};
  OnnxTensor const input(encoder_.runtime(), audio, {1, static_cast<std::int64_t>(audio.size())});
  std::array<OnnxTensor const*, 1> const inputs{&input};
  return std::move(encoder_.run(inputNames, inputs, outputNames).front());
}

std::string MoonshineModel::transcribe(std::span<float const> audio,
                                       std::stop_token const& stop) const {
  OnnxRuntime const& runtime = decoder_.runtime();
  OnnxTensor const hidden = encode(audio);
  auto const limit =
      static_cast<std::size_t>(static_cast<double>(audio.size()) / sampleRate * tokensPerSecond);

  std::vector<OnnxTensor> caches;
  caches.reserve(layers * cacheNames.size());
  std::array<float, 1> const nothing{};
  for (std::size_t index = 0; index < layers * cacheNames.size(); ++index) {
    caches.emplace_back(runtime, std::span(nothing).first(0),
                        OnnxTensor::Shape{0, heads, 1, headSize});
  }

  std::vector<std::int64_t> tokens;
  std::array<std::int64_t, 1> token{startToken};
  while (tokens.size() < limit && !stop.stop_requested()) {
    bool const isFirst = tokens.empty();
    std::array<bool, 1> const useCache{!isFirst};
    OnnxTensor const input(runtime, std::span<std::int64_t const>(token), {1, 1});
    OnnxTensor const branch(runtime, std::span<bool const>(useCache), {1});
    std::vector<OnnxTensor const*> inputs{&input, &hidden, &branch};
    for (OnnxTensor const& cache : caches) inputs.push_back(&cache);

    auto outputs =
        decoder_.run(inputNames_, inputs, isFirst ? firstOutputNames_ : laterOutputNames_);
    token[0] = likeliest(outputs[0]);
    if (token[0] == endToken) break;
    tokens.push_back(token[0]);

    // The caches of the audio stay as the first step has made them.
    std::size_t const perLayer = isFirst ? cacheNames.size() : growingCaches;
    for (std::size_t index = 1; index < outputs.size(); ++index) {
      std::size_t const layer = (index - 1) / perLayer;
      std::size_t const kind = (index - 1) % perLayer;
      caches[layer * cacheNames.size() + kind] = std::move(outputs[index]);
    }
  }
  return vocabulary_.text(tokens);
}

}  // namespace vek
