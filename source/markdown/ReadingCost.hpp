// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace vek {

/// What of a text cmark-gfm can read in time and memory that keep in line with its length. It reads
/// some texts in the square of theirs, and fills the short rows of a table up to its width. Texts
/// that ask for much of that were not written to be read.
struct ReadingCost {
  /// Whether it can be read as Markdown at all.
  bool canRead = true;
  bool canReadTables = true;
  bool canReadAutolinks = true;

  static ReadingCost of(std::string_view text);
};

}  // namespace vek
