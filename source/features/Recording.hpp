// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "runtime/Date.hpp"
#include "runtime/SharedText.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// A recording under way.
struct Recording {
  /// The text of all final pieces, joined with newlines.
  SharedText transcript = {};
  /// The latest partial piece, replaced by each new one.
  std::optional<SharedText> tempTranscript = {};
  /// When the backend had accepted the new transcript.
  Date startDate = {};
  /// The backend's identifier of the transcript.
  UUID id = {};

  bool operator==(Recording const&) const = default;
};

}  // namespace vek
