// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "markdown/DrawnBlock.hpp"
#include "views/TableBounds.hpp"
#include "views/TextPiece.hpp"

namespace vek {

/// The cells of a table, laid out. A table is as wide as its cells ask for. Where there is less
/// room columns give way down to their longest word, and past that the table is wider than its
/// room.
struct TableLayout {
  TableBounds bounds;
  std::vector<TextPiece> pieces;

  /// `start` is where the text of the table begins in that of the document.
  static TableLayout of(DrawnBlock::Grid const& grid, QPointF place, qreal room,
                        LayoutContext const& context, qsizetype start);
};

/// The text of a table as the document counts it: a tab or a break behind each cell but the last.
[[nodiscard]] QString textOf(DrawnBlock::Grid const& grid);

}  // namespace vek
