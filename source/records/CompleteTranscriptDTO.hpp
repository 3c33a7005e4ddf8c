// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <tuple>

#include "records/Field.hpp"

namespace vek {

/// Sent to complete a transcript. The identifiers are lower-case text.
struct CompleteTranscriptDTO {
  std::string customerID = {};
  std::string transcriptID = {};

  static constexpr auto fields() {
    return std::tuple{Field{"customer_id", &CompleteTranscriptDTO::customerID},
                      Field{"transcript_id", &CompleteTranscriptDTO::transcriptID}};
  }
};

}  // namespace vek
