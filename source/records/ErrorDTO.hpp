// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <tuple>

#include "records/Field.hpp"

namespace vek {

/// The body of a refused request.
struct ErrorDTO {
  std::string message = {};

  static constexpr auto fields() { return std::tuple{Field{"message", &ErrorDTO::message}}; }
};

}  // namespace vek
