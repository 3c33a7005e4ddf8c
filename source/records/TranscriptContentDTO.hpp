// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <tuple>

#include "records/Field.hpp"

namespace vek {

/// The stored text of one transcript and its analysis.
struct TranscriptContentDTO {
  std::optional<std::string> transcript = {};
  std::optional<std::string> analysis = {};

  static constexpr auto fields() {
    return std::tuple{Field{"transcript", &TranscriptContentDTO::transcript},
                      Field{"llm_transcript_analysis", &TranscriptContentDTO::analysis}};
  }

  bool operator==(TranscriptContentDTO const&) const = default;
};

}  // namespace vek
