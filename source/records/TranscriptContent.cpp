// SPDX-License-Identifier: MIT
#include "records/TranscriptContent.hpp"

#include <utility>

#include "records/TranscriptContentDTO.hpp"

namespace vek {

TranscriptContent TranscriptContent::from(TranscriptContentDTO content) {
  TranscriptContent result;
  if (content.transcript) result.transcript = std::move(*content.transcript);
  if (content.analysis) result.analysis = std::move(*content.analysis);
  return result;
}

}  // namespace vek
