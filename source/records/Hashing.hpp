// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>

#include "runtime/Date.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/SharedText.hpp"

namespace vek {

template <class Value>
std::size_t hashOf(Value const& value) {
  return std::hash<Value>()(value);
}
inline std::size_t hashOf(SharedText const& text) {
  return hashOf(text.string());
}
inline std::size_t hashOf(Date point) {
  return hashOf(point.time_since_epoch().count());
}
inline std::size_t hashOf(ErrorObject const& error) {
  return error.hash();
}
template <class Value>
std::size_t hashOf(std::optional<Value> const& value) {
  return value ? hashOf(*value) : 0;
}

/// The hash of a record over the given fields, in their order.
template <class... Values>
std::size_t combinedHash(Values const&... values) {
  std::size_t seed = 0;
  ((seed ^= hashOf(values) + 0x9e3779b97f4a7c15U + (seed << 6) + (seed >> 2)), ...);
  return seed;
}

}  // namespace vek
