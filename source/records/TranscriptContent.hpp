// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "records/Hashing.hpp"
#include "runtime/SharedText.hpp"

namespace vek {

struct TranscriptContentDTO;

/// The text of a transcript and its analysis, as one fetch delivers them.
struct TranscriptContent {
  std::optional<SharedText> transcript = {};
  std::optional<SharedText> analysis = {};

  static TranscriptContent from(TranscriptContentDTO content);

  bool operator==(TranscriptContent const&) const = default;
};

}  // namespace vek

template <>
struct std::hash<vek::TranscriptContent> {
  std::size_t operator()(vek::TranscriptContent const& content) const {
    return vek::combinedHash(content.transcript, content.analysis);
  }
};
