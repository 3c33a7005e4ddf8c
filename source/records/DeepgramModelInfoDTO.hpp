// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <tuple>

#include "records/Field.hpp"

namespace vek::Deepgram {

/// The model that recognised something.
struct ModelInfoDTO {
  std::string name = {};
  std::string version = {};
  std::string arch = {};

  static constexpr auto fields() {
    return std::tuple{Field{"name", &ModelInfoDTO::name}, Field{"version", &ModelInfoDTO::version},
                      Field{"arch", &ModelInfoDTO::arch}};
  }

  bool operator==(ModelInfoDTO const&) const = default;
};

}  // namespace vek::Deepgram
