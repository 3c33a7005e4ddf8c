// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vek {

/// The text of one recognised piece.
struct RecordingTranscript {
  std::string text;
  /// The piece may still change.
  bool isPartial = false;

  bool operator==(RecordingTranscript const&) const = default;
};

}  // namespace vek
