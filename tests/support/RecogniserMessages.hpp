// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>

#include "records/DeepgramMetadataDTO.hpp"
#include "records/DeepgramResultDTO.hpp"
#include "records/JSON.hpp"

namespace vek::test {

/// A results message of the hosted recogniser.
inline std::string resultMessage(std::string transcript, bool isFinal) {
  return json::encode(Deepgram::ResultDTO{
      .type = "Results",
      .channelIndex = {0, 1},
      .isFinal = isFinal,
      .channel = {{{.transcript = std::move(transcript), .words = {{.word = "word"}}}}}});
}
inline std::string finalMessage(std::string transcript) {
  return resultMessage(std::move(transcript), true);
}
inline std::string partialMessage(std::string transcript) {
  return resultMessage(std::move(transcript), false);
}

/// The message that ends a stream.
inline std::string closingMessage() {
  return json::encode(Deepgram::MetadataDTO{.type = "Metadata"});
}

}  // namespace vek::test
