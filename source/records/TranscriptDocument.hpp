// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "runtime/Date.hpp"

namespace vek {

/// A transcript as it leaves the program: for a file, the clipboard or a terminal.
struct TranscriptDocument {
  Date startDate;
  /// Empty when there is none.
  std::string customer;
  std::string text;
  /// Empty when there is none. Already of the form that is asked for.
  std::string analysis;

  [[nodiscard]] std::string markdown() const;
  [[nodiscard]] std::string plainText() const;
};

/// A moment as people read it, by the clock of this machine.
[[nodiscard]] std::string localTime(Date date);

}  // namespace vek
