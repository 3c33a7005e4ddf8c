// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <tuple>

#include "records/Field.hpp"
#include "records/TranscriptionStatusDTO.hpp"

namespace vek {

/// The answer to completing a transcript.
struct CompletedTranscriptDTO {
  std::optional<TranscriptionStatusDTO> status = {};
  std::optional<std::string> llmAnalysisStatus = {};

  static constexpr auto fields() {
    return std::tuple{Field{"status", &CompletedTranscriptDTO::status},
                      Field{"llm_analysis_status", &CompletedTranscriptDTO::llmAnalysisStatus}};
  }
};

}  // namespace vek
