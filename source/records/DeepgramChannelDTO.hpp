// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "records/Field.hpp"

namespace vek::Deepgram {

/// One word; its times are seconds from the start of the audio.
struct WordDTO {
  std::string word = {};
  double start = 0;
  double end = 0;
  double confidence = 0;
  std::int64_t speaker = 0;

  static constexpr auto fields() {
    return std::tuple{Field{"word", &WordDTO::word}, Field{"start", &WordDTO::start},
                      Field{"end", &WordDTO::end}, Field{"confidence", &WordDTO::confidence},
                      Field{"speaker", &WordDTO::speaker}};
  }

  bool operator==(WordDTO const&) const = default;
};

/// One reading of what was said.
struct AlternativeDTO {
  std::string transcript = {};
  double confidence = 0;
  std::vector<WordDTO> words = {};

  static constexpr auto fields() {
    return std::tuple{Field{"transcript", &AlternativeDTO::transcript},
                      Field{"confidence", &AlternativeDTO::confidence},
                      Field{"words", &AlternativeDTO::words}};
  }

  bool operator==(AlternativeDTO const&) const = default;
};

/// What was said on one channel, the best reading first.
struct ChannelDTO {
  std::vector<AlternativeDTO> alternatives = {};

  static constexpr auto fields() {
    return std::tuple{Field{"alternatives", &ChannelDTO::alternatives}};
  }

  bool operator==(ChannelDTO const&) const = default;
};

}  // namespace vek::Deepgram
