// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <tuple>

#include "records/Field.hpp"
#include "runtime/Date.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// One row of the list of transcripts without their texts, identified by `id`.
struct TranscriptMetadataDTO {
  UUID id = {};
  std::optional<UUID> insightID = {};
  Date createdOn = {};
  Date lastModifiedOn = {};
  std::optional<UUID> customerID = {};

  static constexpr auto fields() {
    return std::tuple{Field{"transcript_id", &TranscriptMetadataDTO::id},
                      Field{"insight_id", &TranscriptMetadataDTO::insightID},
                      Field{"created_on", &TranscriptMetadataDTO::createdOn},
                      Field{"last_modified_on", &TranscriptMetadataDTO::lastModifiedOn},
                      Field{"customer_id", &TranscriptMetadataDTO::customerID}};
  }

  bool operator==(TranscriptMetadataDTO const&) const = default;
};

}  // namespace vek
