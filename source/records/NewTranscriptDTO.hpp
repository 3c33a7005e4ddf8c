// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <tuple>

#include "records/Field.hpp"
#include "records/TranscriptionStatusDTO.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// The answer to creating a transcript.
struct NewTranscriptDTO {
  UUID id = {};
  std::optional<UUID> insightID = {};
  std::optional<std::string> createdOn = {};
  std::optional<UUID> customerID = {};
  TranscriptionStatusDTO status = TranscriptionStatusDTO::inProgress;

  static constexpr auto fields() {
    return std::tuple{Field{"transcript_id", &NewTranscriptDTO::id},
                      Field{"insight_id", &NewTranscriptDTO::insightID},
                      Field{"created_on", &NewTranscriptDTO::createdOn},
                      Field{"customer_id", &NewTranscriptDTO::customerID},
                      Field{"status", &NewTranscriptDTO::status}};
  }

  bool operator==(NewTranscriptDTO const&) const = default;
};

}  // namespace vek
