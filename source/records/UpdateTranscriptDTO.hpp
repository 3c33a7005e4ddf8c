// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <tuple>

#include "records/Field.hpp"

namespace vek {

/// Sent to append text to a transcript. The identifier is lower-case text.
struct UpdateTranscriptDTO {
  std::string transcript = {};
  std::string transcriptID = {};

  static constexpr auto fields() {
    return std::tuple{Field{"transcript", &UpdateTranscriptDTO::transcript},
                      Field{"transcript_id", &UpdateTranscriptDTO::transcriptID}};
  }
};

}  // namespace vek
