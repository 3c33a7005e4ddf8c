// SPDX-License-Identifier: MIT
#include "Clients/ListenRequestImpl.hpp"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "Clients/RemoteSpeechRecognitionError.hpp"
#include "platform/Deployment.hpp"
#include "platform/URLComponents.hpp"

namespace vek {
namespace {

/// The whole samples a second of a rate that an integer can hold.
std::optional<std::int64_t> integer(double sampleRate) {
  constexpr double end = 0x1p63;
  // A rate that is no number fails both comparisons.
  if (!(sampleRate >= -end && sampleRate < end)) return std::nullopt;
  return static_cast<std::int64_t>(sampleRate);
}

}  // namespace

HTTPRequest listenRequest(AudioFormat const& format) {
  auto const sampleRate = integer(format.sampleRate());
  if (!sampleRate)
    throw RemoteSpeechRecognitionError(RemoteSpeechRecognitionError::programmerError);
  auto const current = deployment();
  URLComponents components(current.recogniserURL + "/v1/listen");
  components.setQueryItems({{"model", "nova-2-meeting"},
                            {"diarize", "true"},
                            {"interim_results", "true"},
                            {"endpointing", "true"},
                            {"sample_rate", std::to_string(*sampleRate)},
                            {"channels", std::to_string(format.channelCount())},
                            {"encoding", "linear16"}});
  auto const url = components.url();
  if (!url) throw RemoteSpeechRecognitionError(RemoteSpeechRecognitionError::programmerError);
  return {.url = *url,
          .headers = {{"Authorization", "Token " + current.recogniserKey}},
          .timeout = std::chrono::seconds(60)};
}

}  // namespace vek
