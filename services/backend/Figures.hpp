// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "services/backend/Sentences.hpp"

namespace vek::services {

/// A figure or a date that somebody said.
struct Figure {
  enum class Kind { amount, percentage, date, time, quantity };
  Kind kind;
  /// As it was said: "twelve thousand dollars", "Friday afternoon".
  std::string text;
};

/// The figures and dates of one sentence, in their order. English.
[[nodiscard]] std::vector<Figure> figures(std::vector<Word> const& words);

[[nodiscard]] std::string_view name(Figure::Kind kind);

}  // namespace vek::services
