// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <tuple>

#include "records/Field.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// One pre-meeting brief.
struct BriefDTO {
  std::string title = {};
  UUID sessionID = {};
  UUID insightID = {};
  std::string readStatus = {};

  static constexpr auto fields() {
    return std::tuple{Field{"title", &BriefDTO::title}, Field{"session_id", &BriefDTO::sessionID},
                      Field{"insight_id", &BriefDTO::insightID},
                      Field{"read_status", &BriefDTO::readStatus}};
  }
};

}  // namespace vek
