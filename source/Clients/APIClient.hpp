// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "records/BriefDTO.hpp"
#include "records/CompletedTranscriptDTO.hpp"
#include "records/CustomerDTO.hpp"
#include "records/DeletedTranscriptDTO.hpp"
#include "records/NewTranscriptDTO.hpp"
#include "records/TranscriptContentDTO.hpp"
#include "records/TranscriptDTO.hpp"
#include "records/TranscriptMetadataDTO.hpp"
#include "runtime/DependencyValues.hpp"
#include "runtime/Task.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// The only way to the product's backend. Operations may run at the same time. They throw
/// APIClientError, the error of the credentials, or an HTTPError when the transport failed.
struct APIClient {
  using OptionalID = std::optional<UUID>;

  std::function<Task<std::string>(std::string transcript)> getTranscriptAnalysis;
  std::function<Task<std::vector<CustomerDTO>>()> getCustomers;
  std::function<Task<std::vector<BriefDTO>>(OptionalID customer)> getPreMeetingsBriefs;
  std::function<Task<NewTranscriptDTO>(OptionalID customer, OptionalID insight)> createTranscript;
  std::function<Task<>(std::string text, UUID transcript)> updateTranscript;
  std::function<Task<CompletedTranscriptDTO>(UUID customer, UUID transcript)> completeTranscript;
  std::function<Task<std::vector<TranscriptDTO>>(OptionalID customer, OptionalID insight)>
      getAllTranscripts;
  std::function<Task<DeletedTranscriptDTO>(UUID transcript)> deleteTranscript;
  std::function<Task<std::vector<TranscriptMetadataDTO>>()> getAllTranscriptsMetadata;
  std::function<Task<TranscriptContentDTO>(UUID transcript)> getTranscriptContent;
};

struct APIClientKey {
  using Value = APIClient;
  static APIClient liveValue();
};
inline constexpr DependencyKeyPath<APIClientKey> apiClient;

}  // namespace vek
