// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <tuple>

#include "records/Field.hpp"

namespace vek {

/// Sent to create a transcript. The identifiers are lower-case text.
struct CreateTranscriptDTO {
  std::optional<std::string> customerID = {};
  std::optional<std::string> insightID = {};

  static constexpr auto fields() {
    return std::tuple{Field{"customer_id", &CreateTranscriptDTO::customerID},
                      Field{"insight_id", &CreateTranscriptDTO::insightID}};
  }
};

}  // namespace vek
