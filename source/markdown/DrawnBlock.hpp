// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
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
  /// What boxes that follow one another stand in. All of them hold the same one.
  struct Frame {
    enum class Kind { quote, list, item };

    Kind kind = Kind::quote;
    std::shared_ptr<Frame const> outer = {};
    int depth = 1;
    double leading = 0;
    double trailing = 0;
    /// Between its edge and its first and last box.
    double top = 0;
    double bottom = 0;
    std::optional<ThemeColor> background = {};
    std::optional<ThemeColor> border = {};
    std::optional<ThemeColor> leadingBar = {};
  };
  using Frames = std::shared_ptr<Frame const>;

  std::variant<Text, Grid, ImageFlow, Rule> content;
  Drawable drawable = {};
  double gapAbove = 0;
  /// The padding of the frames that begin and end with it.
  double paddingAbove = 0;
  double paddingBelow = 0;
  double leading = 0;
  double trailing = 0;
  std::vector<Marker> markers = {};
  /// The innermost one.
  Frames frame = {};

  [[nodiscard]] bool isIn(Frame const& other) const {
    auto const* in = frame.get();
    while (in && in != &other) in = in->outer.get();
    return in;
  }
};

}  // namespace vek
