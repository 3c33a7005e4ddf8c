// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "markdown/DrawnBlock.hpp"
#include "views/BlockSlice.hpp"
#include "views/TableBounds.hpp"
#include "views/TextPiece.hpp"

namespace vek {

/// How wide the columns of a table are. A table is as wide as its cells ask for. Where there is
/// less room columns give way down to their longest word, and past that the table is wider than its
/// room. Of a long table the first rows are asked, and the longest cell of each column.
[[nodiscard]] std::vector<qreal> columnWidths(DrawnBlock::Grid const& grid, qreal room,
                                              LayoutContext const& context);

/// Rows of a table, laid out.
struct TableLayout {
  TableBounds bounds;
  std::vector<TextPiece> pieces;

  /// The rows of a slice, from a place on downwards.
  static TableLayout of(DrawnBlock::Grid const& grid, BlockSlice const& slice, QPointF place,
                        std::vector<qreal> const& columnWidths, LayoutContext const& context);
};

/// The text of a row as the document counts it: a tab behind each cell but the last.
[[nodiscard]] QString textOf(std::vector<DrawnBlock::Cell> const& row);

}  // namespace vek
