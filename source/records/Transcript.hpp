// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "records/Hashing.hpp"
#include "records/TranscriptContent.hpp"
#include "records/TranscriptContentState.hpp"
#include "runtime/Date.hpp"
#include "runtime/UUID.hpp"

namespace vek {

struct TranscriptMetadataDTO;

/// One stored transcript, identified by `id`. `id` and `startDate` do not change; a customer may
/// be assigned later, and the text and its analysis are fetched one by one.
struct Transcript {
  UUID id;
  Date startDate;
  std::optional<UUID> customerID = {};
  TranscriptContentState textState = {};
  TranscriptContentState analysisState = {};

  /// A transcript of which nothing was fetched yet.
  static Transcript from(TranscriptMetadataDTO const& metadata);

  /// Takes over both texts of a fetch; a missing one counts as empty.
  void setContent(TranscriptContent const& content);

  bool operator==(Transcript const&) const = default;
};

}  // namespace vek

template <>
struct std::hash<vek::Transcript> {
  std::size_t operator()(vek::Transcript const& transcript) const {
    return vek::combinedHash(transcript.id, transcript.startDate, transcript.customerID,
                             transcript.textState, transcript.analysisState);
  }
};
