// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "runtime/DependencyValues.hpp"

namespace vek {

class Locale;

/// The locale that the user works in.
struct LocaleKey {
  using Value = std::shared_ptr<Locale const>;
  static Value liveValue();
};
inline constexpr DependencyKeyPath<LocaleKey> locale;

}  // namespace vek
