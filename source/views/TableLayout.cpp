// SPDX-License-Identifier: MIT
#include "views/TableLayout.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace vek {

namespace {

/// A word that is longer does not keep its column from giving way. No image in a cell is wider.
constexpr qreal longestWord = 160;
constexpr qreal unlimited = 1e6;
constexpr std::size_t cellsAsked = 300;

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

std::size_t lengthOf(DrawnBlock::Cell const& cell) {
  std::size_t length = 0;
  for (auto const& run : cell.runs) length += run.text.size();
  return length;
}

struct CellPlace {
  std::size_t row = 0;
  std::size_t column = 0;
};

/// The cells that are asked for their width.
std::vector<CellPlace> askedCells(DrawnBlock::Grid const& grid) {
  auto const columns = grid.columnAlignments.size();
  auto const first =
      std::min(grid.rows.size(), std::max<std::size_t>(1, cellsAsked / std::max(columns, 1UL)));
  std::vector<CellPlace> asked;
  for (std::size_t row = 0; row < first; ++row)
    for (std::size_t column = 0; column < grid.rows[row].size(); ++column)
      asked.push_back({row, column});
  std::vector<std::pair<std::size_t, std::size_t>> longest(columns);
  for (std::size_t row = first; row < grid.rows.size(); ++row)
    for (std::size_t column = 0; column < grid.rows[row].size(); ++column)
      longest[column] = std::max(longest[column], {lengthOf(grid.rows[row][column]), row});
  for (std::size_t column = 0; column < columns; ++column)
    if (longest[column].first > 0) asked.push_back({longest[column].second, column});
  return asked;
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

std::vector<qreal> columnWidths(DrawnBlock::Grid const& grid, qreal room,
                                LayoutContext const& context) {
  std::vector<Need> needs(grid.columnAlignments.size());
  for (auto const [row, column] : askedCells(grid)) {
    auto const& cell = grid.rows[row][column];
    TextPiece piece(cell.runs, cell.drawable, context, longestWord, 0);
    piece.layOut(unlimited, TextPiece::Wrapping::betweenWords);
    auto const padding = cell.drawable.padding.leading + cell.drawable.padding.trailing;
    auto& need = needs[column];
    need.natural = std::max(need.natural, std::ceil(piece.naturalWidth() + padding));
    need.least =
        std::max(need.least, std::ceil(std::min(piece.leastWidth(), longestWord) + padding));
  }
  return widths(needs, room);
}

TableLayout TableLayout::of(DrawnBlock::Grid const& grid, BlockSlice const& slice, QPointF place,
                            std::vector<qreal> const& columnWidths, LayoutContext const& context) {
  TableLayout table;
  table.bounds.columns = spans(columnWidths, place.x());
  auto start = slice.start;
  auto y = place.y();
  for (auto row = slice.from.item; row < slice.to.item; ++row) {
    qreal height = 0;
    for (std::size_t column = 0; column < grid.rows[row].size(); ++column) {
      auto const& cell = grid.rows[row][column];
      auto const& padding = cell.drawable.padding;
      auto& piece =
          table.pieces.emplace_back(cell.runs, cell.drawable, context, longestWord, start);
      start += piece.length() + 1;
      piece.layOut(columnWidths[column] - padding.leading - padding.trailing,
                   TextPiece::Wrapping::anywhere, alignmentOf(grid.columnAlignments[column]));
      piece.place = {table.bounds.columns[column].position + padding.leading,
                     y + std::round(padding.top)};
      height = std::max(height, std::round(piece.height() + padding.top + padding.bottom));
    }
    table.bounds.rows.push_back({y, height});
    y += height;
  }
  auto const width = std::reduce(columnWidths.begin(), columnWidths.end());
  table.bounds.bounds = {place, QSizeF(width, y - place.y())};
  return table;
}

QString textOf(std::vector<DrawnBlock::Cell> const& row) {
  QString text;
  for (std::size_t column = 0; column < row.size(); ++column) {
    if (column > 0) text += u'\t';
    text += textOf(row[column].runs);
  }
  return text;
}

}  // namespace vek
