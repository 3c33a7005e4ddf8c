// SPDX-License-Identifier: MIT
#pragma once

#include <tuple>

#include "records/Field.hpp"
#include "records/TranscriptionStatusDTO.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// The answer to deleting a transcript.
struct DeletedTranscriptDTO {
  UUID id = {};
  TranscriptionStatusDTO status = TranscriptionStatusDTO::inProgress;

  static constexpr auto fields() {
    return std::tuple{Field{"transcript_id", &DeletedTranscriptDTO::id},
                      Field{"status", &DeletedTranscriptDTO::status}};
  }
};

}  // namespace vek
