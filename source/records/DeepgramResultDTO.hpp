// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "records/DeepgramChannelDTO.hpp"
#include "records/DeepgramModelInfoDTO.hpp"
#include "records/Field.hpp"

namespace vek::Deepgram {

/// A message of the hosted recogniser: the text of a stretch of audio, which may still change
/// unless `isFinal`. Times are seconds.
struct ResultDTO {
  /// Who made the result; not the record that closes a stream.
  struct MetadataDTO {
    std::string requestId = {};
    ModelInfoDTO modelInfo = {};
    std::string modelUUID = {};

    static constexpr auto fields() {
      return std::tuple{Field{"request_id", &MetadataDTO::requestId},
                        Field{"model_info", &MetadataDTO::modelInfo},
                        Field{"model_uuid", &MetadataDTO::modelUUID}};
    }

    bool operator==(MetadataDTO const&) const = default;
  };

  std::string type = {};
  std::vector<std::int64_t> channelIndex = {};
  double duration = 0;
  double start = 0;
  bool isFinal = false;
  bool speechFinal = false;
  ChannelDTO channel = {};
  MetadataDTO metadata = {};
  bool fromFinalize = false;

  static constexpr auto fields() {
    return std::tuple{Field{"type", &ResultDTO::type},
                      Field{"channel_index", &ResultDTO::channelIndex},
                      Field{"duration", &ResultDTO::duration},
                      Field{"start", &ResultDTO::start},
                      Field{"is_final", &ResultDTO::isFinal},
                      Field{"speech_final", &ResultDTO::speechFinal},
                      Field{"channel", &ResultDTO::channel},
                      Field{"metadata", &ResultDTO::metadata},
                      Field{"from_finalize", &ResultDTO::fromFinalize}};
  }

  bool operator==(ResultDTO const&) const = default;
};

}  // namespace vek::Deepgram
