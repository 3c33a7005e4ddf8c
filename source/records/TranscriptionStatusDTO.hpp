// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>
#include <utility>

namespace vek {

/// How far a transcript is.
enum class TranscriptionStatusDTO {
  inProgress,
  completed,
  deleted,
  started,
  failed,
  llmAnalysisCompleted,
};

/// The texts on the wire.
constexpr auto jsonTexts(TranscriptionStatusDTO) {
  using enum TranscriptionStatusDTO;
  return std::array<std::pair<TranscriptionStatusDTO, std::string_view>, 6>{{
      {inProgress, "IN_PROGRESS"},
      {completed, "TRANSCRIPTION_COMPLETE"},
      {deleted, "DELETED"},
      {started, "STARTED"},
      {failed, "FAILED"},
      {llmAnalysisCompleted, "LLM_ANALYSIS_COMPLETE"},
  }};
}

}  // namespace vek
