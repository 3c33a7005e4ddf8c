// SPDX-License-Identifier: MIT
#include "records/Transcript.hpp"

#include "records/TranscriptMetadataDTO.hpp"

namespace vek {

Transcript Transcript::from(TranscriptMetadataDTO const& metadata) {
  return {.id = metadata.id, .startDate = metadata.createdOn, .customerID = metadata.customerID};
}

void Transcript::setContent(TranscriptContent const& content) {
  using State = TranscriptContentState;
  textState = State::content{content.transcript.value_or(SharedText())};
  analysisState = State::content{content.analysis.value_or(SharedText())};
}

}  // namespace vek
