// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace vek {

/// The whole number that a text consists of, in decimal digits and nothing else; nothing where it
/// is none or does not fit.
template <class Number>
std::optional<Number> number(std::string_view text) {
  Number number = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace vek
