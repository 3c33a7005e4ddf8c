// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "runtime/Date.hpp"

namespace vek {

/// Dates on the backend's wire: the format "MM/dd/yy hh:mm:ss a zzz" of the locale "en_US_POSIX",
/// written in UTC, such as "05/15/24 03:04:05 PM UTC". Any thread may call.
struct DateFormatter {
  /// The date of a whole second, or nothing when `text` is no date of this format. A year of two
  /// digits is the one within 80 years before and 20 years after today.
  static std::optional<Date> parse(std::string_view text);

  /// `date` cut to its second.
  static std::string format(Date date);
};

}  // namespace vek
