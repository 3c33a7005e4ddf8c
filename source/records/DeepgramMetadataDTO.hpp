// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "records/DeepgramModelInfoDTO.hpp"
#include "records/Field.hpp"

namespace vek::Deepgram {

/// The last message of the hosted recogniser about a stream: what it has taken in all.
struct MetadataDTO {
  std::string type = {};
  std::string transactionKey = {};
  std::string requestId = {};
  std::string sha256 = {};
  std::string created = {};
  double duration = 0;
  std::int64_t channels = 0;
  std::optional<std::vector<std::string>> models = {};
  std::optional<std::map<std::string, ModelInfoDTO>> modelInfo = {};

  static constexpr auto fields() {
    return std::tuple{Field{"type", &MetadataDTO::type},
                      Field{"transaction_key", &MetadataDTO::transactionKey},
                      Field{"request_id", &MetadataDTO::requestId},
                      Field{"sha256", &MetadataDTO::sha256},
                      Field{"created", &MetadataDTO::created},
                      Field{"duration", &MetadataDTO::duration},
                      Field{"channels", &MetadataDTO::channels},
                      Field{"models", &MetadataDTO::models},
                      Field{"model_info", &MetadataDTO::modelInfo}};
  }

  bool operator==(MetadataDTO const&) const = default;
};

}  // namespace vek::Deepgram
