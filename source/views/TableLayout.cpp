// SPDX-License-Identifier: MIT
#include "views/TableLayout.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vek {

namespace {

/// A word that is longer does not keep its column from giving way. No image in a cell is wider.
constexpr qreal longestWord = 160;
constexpr qreal unlimited = 1e6;

/// What a column needs at least and what it takes at best, its padding included.
struct Need {
  qreal least = 0;
  qreal natural = 0;
};

Qt::Alignment alignmentOf(RawTableColumnAlignment alignment) {
  switch (alignment) {
    case RawTableColumnAlignment::center:
      return Qt::AlignHCenter;
    case RawTableColumnAlignment::right:
      return Qt::AlignRight;
    case RawTableColumnAlignment::none:
    case RawTableColumnAlignment::left:
      break;
  }
  return Qt::AlignLeft;
}

std::vector<qreal> widths(std::vector<Need> const& needs, qreal room) {
  Need sum;
  for (auto const& need : needs) {
    sum.least += need.least;
    sum.natural += need.natural;
  }
  auto const spare = std::clamp(room - sum.least, 0.0, sum.natural - sum.least);
  auto const share = sum.natural > sum.least ? spare / (sum.natural - sum.least) : 0;
  std::vector<qreal> widths;
  widths.reserve(needs.size());
  for (auto const& need : needs)
    widths.push_back(std::floor(need.least + share * (need.natural - need.least)));
  return widths;
}

template <class Visit>
void forEachCell(DrawnBlock::Grid const& grid, Visit visit) {
  for (std::size_t row = 0; row < grid.rows.size(); ++row)
    for (std::size_t column = 0; column < grid.rows[row].size(); ++column)
      visit(row, column, grid.rows[row][column]);
}

std::vector<TableBounds::Span> spans(std::vector<qreal> const& sizes, qreal from) {
  std::vector<TableBounds::Span> spans;
  spans.reserve(sizes.size());
  for (auto size : sizes) {
    spans.push_back({from, size});
    from += size;
  }
  return spans;
}

}  // namespace

TableLayout TableLayout::of(DrawnBlock::Grid const& grid, QPointF place, qreal room,
                            LayoutContext const& context, qsizetype start) {
  TableLayout table;
  std::vector<Need> needs(grid.columnAlignments.size());
  forEachCell(grid, [&](std::size_t, std::size_t column, DrawnBlock::Cell const& cell) {
    auto& piece = table.pieces.emplace_back(cell.runs, cell.drawable, context, longestWord, start);
    start += piece.length() + 1;
    piece.layOut(unlimited, TextPiece::Wrapping::betweenWords);
    auto const padding = cell.drawable.padding.leading + cell.drawable.padding.trailing;
    auto& need = needs[column];
    need.natural = std::max(need.natural, std::ceil(piece.naturalWidth() + padding));
    need.least =
        std::max(need.least, std::ceil(std::min(piece.leastWidth(), longestWord) + padding));
  });
  auto const columnWidths = widths(needs, room);
  table.bounds.columns = spans(columnWidths, place.x());

  std::vector<qreal> heights(grid.rows.size());
  auto piece = table.pieces.begin();
  forEachCell(grid, [&](std::size_t row, std::size_t column, DrawnBlock::Cell const& cell) {
    auto const& padding = cell.drawable.padding;
    piece->layOut(columnWidths[column] - padding.leading - padding.trailing,
                  TextPiece::Wrapping::anywhere, alignmentOf(grid.columnAlignments[column]));
    heights[row] =
        std::max(heights[row], std::round(piece->height() + padding.top + padding.bottom));
    ++piece;
  });
  table.bounds.rows = spans(heights, place.y());

  piece = table.pieces.begin();
  forEachCell(grid, [&](std::size_t row, std::size_t column, DrawnBlock::Cell const& cell) {
    piece->place = {table.bounds.columns[column].position + cell.drawable.padding.leading,
                    table.bounds.rows[row].position + std::round(cell.drawable.padding.top)};
    ++piece;
  });
  table.bounds.bounds = {place, QSizeF(std::reduce(columnWidths.begin(), columnWidths.end()),
                                       std::reduce(heights.begin(), heights.end()))};
  return table;
}

QString textOf(DrawnBlock::Grid const& grid) {
  QString text;
  forEachCell(grid, [&](std::size_t row, std::size_t column, DrawnBlock::Cell const& cell) {
    if (column > 0) {
      text += u'\t';
    } else if (row > 0) {
      text += u'\n';
    }
    text += textOf(cell.runs);
  });
  return text;
}

}  // namespace vek
