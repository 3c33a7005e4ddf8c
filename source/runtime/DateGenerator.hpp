// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "runtime/Date.hpp"
#include "runtime/DependencyValues.hpp"

namespace vek {

/// Gives the current date.
struct DateGenerator {
  std::function<Date()> generate;
};

struct DateKey {
  using Value = DateGenerator;
  static DateGenerator liveValue() {
    return {[] { return std::chrono::system_clock::now(); }};
  }
};
inline constexpr DependencyKeyPath<DateKey> date;

}  // namespace vek
