// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "records/DeepgramMetadataDTO.hpp"
#include "records/DeepgramResultDTO.hpp"

namespace vek::services {

/// Makes the records of one stream. Results follow each other without a gap: each covers the audio
/// since the last final one. Times are seconds of the stream.
class ListenResults {
 public:
  struct Stretch {
    double start = 0;
    double end = 0;
  };

  /// `requestID` names the stream to its client.
  explicit ListenResults(std::string requestID) : requestID_(std::move(requestID)) {}

  /// A text that may still change, of the audio up to `end`.
  [[nodiscard]] Deepgram::ResultDTO interim(std::string const& text, double end) const;
  /// A settled one of the audio up to `end`, whose words were said within `speech`.
  [[nodiscard]] Deepgram::ResultDTO settled(std::string const& text, Stretch speech, double end);

  /// What there was in all.
  [[nodiscard]] Deepgram::MetadataDTO closing(std::string sha256, double duration,
                                              std::uint32_t channels) const;

 private:
  [[nodiscard]] Deepgram::ResultDTO result(std::string const& text, Stretch speech,
                                           double end) const;

  std::string requestID_;
  double settledUntil_ = 0;
};

}  // namespace vek::services
