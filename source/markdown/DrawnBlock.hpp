// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <variant>
#include <vector>

#include "markdown/Drawable.hpp"
#include "markdown/InlineText.hpp"
#include "markdown/RawTableColumnAlignment.hpp"

namespace vek {

/// One of the boxes that stand below one another when all nesting is undone: what it holds and how
/// far it is from its neighbours and edges, in points. Its height is known to who draws it.
struct DrawnBlock {
  struct Text {
    std::vector<InlineRun> runs;
    /// 0 for what is no heading.
    int headingLevel = 0;
  };
  struct Cell {
    Drawable drawable;
    std::vector<InlineRun> runs;
  };
  struct Grid {
    std::vector<RawTableColumnAlignment> columnAlignments;
    std::vector<std::vector<Cell>> rows;
  };
  struct Rule {};

  /// Beside the first box of a list item, its text against its right edge.
  struct Marker {
    Drawable drawable;
    double left = 0;
    double width = 0;
  };
  /// Beside all boxes of a quote. Between two boxes that have the same one it goes on.
  struct Bar {
    std::size_t quote = 0;
    double left = 0;
    ThemeColor color = ThemeColor::quoteBar;
  };

  std::variant<Text, Grid, ImageFlow, Rule> content;
  Drawable drawable = {};
  double gapAbove = 0;
  double leading = 0;
  double trailing = 0;
  std::vector<Marker> markers = {};
  std::vector<Bar> bars = {};
};

}  // namespace vek
