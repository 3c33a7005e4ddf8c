// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <tuple>

#include "records/Field.hpp"
#include "records/TranscriptionStatusDTO.hpp"
#include "runtime/Date.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// One row of the list of whole transcripts.
struct TranscriptDTO {
  UUID id = {};
  UUID insightID = {};
  std::string transcript = {};
  TranscriptionStatusDTO status = TranscriptionStatusDTO::inProgress;
  Date createdOn = {};

  static constexpr auto fields() {
    return std::tuple{
        Field{"transcript_id", &TranscriptDTO::id}, Field{"insight_id", &TranscriptDTO::insightID},
        Field{"transcript", &TranscriptDTO::transcript}, Field{"status", &TranscriptDTO::status},
        Field{"created_on", &TranscriptDTO::createdOn}};
  }

  bool operator==(TranscriptDTO const&) const = default;
};

}  // namespace vek
