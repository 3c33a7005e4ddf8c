// SPDX-License-Identifier: MIT
#include "views/BlockLayout.hpp"

#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <ranges>
#include <span>

#include "views/Fonts.hpp"
#include "views/TableLayout.hpp"

namespace vek {

namespace {

constexpr qreal radius = 6;
/// However deep a block nests, so much stays for its text.
constexpr qreal leastRoom = 80;
constexpr qreal imageGap = 8;
constexpr qreal ruleHeight = 1;
/// A symbol to the capital letters beside it.
constexpr qreal symbolScale = 0.92;

/// What a block takes, and what its padding leaves to its content.
QRectF areaOf(DrawnBlock const& block, qreal width) {
  auto const leading = std::round(std::min(block.leading, std::max(0.0, width - leastRoom)));
  auto const trailing = std::min(block.trailing, std::max(0.0, width - leading - leastRoom));
  return {leading, 0, std::max(1.0, width - leading - trailing), 0};
}
QRectF innerAreaOf(DrawnBlock const& block, qreal width) {
  auto const area = areaOf(block, width);
  auto const& padding = block.drawable.padding;
  return {std::round(area.left() + padding.leading), 0,
          std::max(1.0, area.width() - padding.leading - padding.trailing), 0};
}

}  // namespace

qreal roomOf(DrawnBlock const& block, qreal width) {
  return innerAreaOf(block, width).width();
}

bool hasImage(DrawnBlock const& block, BlockSlice const& slice, ImageCondition const& isTrue) {
  auto const isOne = [&](InlineRun const& run) { return run.image && isTrue(*run.image); };
  auto const items = [&](auto const& all, std::size_t end) {
    auto const from = std::min(slice.from.item, all.size());
    return std::span(all).subspan(from, std::min(end, all.size()) - from);
  };
  if (auto const* text = std::get_if<DrawnBlock::Text>(&block.content))
    return std::ranges::any_of(items(text->runs, slice.to.item + 1), isOne);
  if (auto const* grid = std::get_if<DrawnBlock::Grid>(&block.content)) {
    return std::ranges::any_of(
        items(grid->rows, slice.to.item) | std::views::join,
        [&](DrawnBlock::Cell const& cell) { return std::ranges::any_of(cell.runs, isOne); });
  }
  auto const* flow = std::get_if<ImageFlow>(&block.content);
  return flow && std::ranges::any_of(items(*flow, slice.to.item), [&](auto const& item) {
           auto const* image = std::get_if<RawImageData>(&item);
           return image && isTrue(*image);
         });
}

void drawBox(QPainter& painter, QRectF const& rect, BoxColors const& box,
             MarkdownColors const& colors) {
  if (box.background || box.border) {
    painter.setPen(box.border ? QPen(colors.of(*box.border)) : QPen(Qt::NoPen));
    painter.setBrush(box.background ? QBrush(colors.of(*box.background)) : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(box.border ? rect.adjusted(0.5, 0.5, -0.5, -0.5) : rect, radius,
                            radius);
  }
  if (box.leadingBar) {
    painter.fillRect(QRectF(rect.left() + barInset, rect.top(), barWidth, rect.height()),
                     colors.of(*box.leadingBar));
  }
}

BlockLayout::BlockLayout(DrawnBlock const& block, BlockSlice const& slice, qreal width,
                         std::vector<qreal> const& columnWidths, LayoutContext const& context)
    : block_(block),
      slice_(slice),
      end_{slice.to, slice.end},
      room_(areaOf(block, width)),
      inner_(innerAreaOf(block, width)) {
  auto const& padding = block.drawable.padding;
  if (slice.isFirst) inner_.moveTop(std::round(padding.top));
  qreal contentHeight = ruleHeight;
  if (auto const* text = std::get_if<DrawnBlock::Text>(&block.content)) {
    contentHeight = layOutText(*text, context);
  } else if (auto const* grid = std::get_if<DrawnBlock::Grid>(&block.content)) {
    contentHeight = layOutGrid(*grid, columnWidths, context);
  } else if (auto const* flow = std::get_if<ImageFlow>(&block.content)) {
    contentHeight = layOutImages(*flow, context);
  }
  // What is hidden takes no room.
  if (contentHeight > 0)
    height_ = inner_.top() + contentHeight + (slice.isLast ? std::round(padding.bottom) : 0);
  inner_.setHeight(contentHeight);
  room_.setHeight(height_);
  if (slice.isFirst) addMarkers(context);
}

qreal BlockLayout::layOutText(DrawnBlock::Text const& text, LayoutContext const& context) {
  auto const& drawable = block_.drawable;
  bool const wraps = !drawable.isScrollable;
  if (!slice_.isFirst) inner_.moveTop(std::round(drawable.lineSpacing));
  std::vector<InlineRun> part;
  if (!slice_.isWhole()) part = runsBetween(text.runs, slice_.from, slice_.to);
  // The line behind it is the first of the next slice.
  bool const endsLine = !slice_.isLast && !wraps && part.back().text.ends_with('\n');
  if (endsLine) part.back().text.pop_back();
  auto& piece = pieces_.emplace_back(slice_.isWhole() ? text.runs : part, drawable, context,
                                     inner_.width(), slice_.start);
  piece.place = inner_.topLeft();
  bool const isRightToLeft = slice_.direction == Qt::LayoutDirectionAuto
                                 ? piece.isRightToLeft()
                                 : slice_.direction == Qt::RightToLeft;
  piece.layOut(inner_.width(), wraps ? TextPiece::Wrapping::anywhere : TextPiece::Wrapping::never,
               wraps && isRightToLeft ? Qt::AlignRight : Qt::AlignLeft, slice_.direction);
  if (wraps && !slice_.isLast) {
    piece.leaveLastLine();
    end_ = {placeAfter(text.runs, slice_.from, piece.length()), slice_.start + piece.length()};
  }
  if (!wraps) overflow_ = std::max(0.0, piece.naturalWidth() - inner_.width());
  return piece.height();
}

qreal BlockLayout::layOutGrid(DrawnBlock::Grid const& grid, std::vector<qreal> const& columnWidths,
                              LayoutContext const& context) {
  auto table = TableLayout::of(grid, slice_, inner_.topLeft(), columnWidths, context);
  table_ = std::move(table.bounds);
  pieces_ = std::move(table.pieces);
  overflow_ = std::max(0.0, table_.bounds.width() - inner_.width());
  return table_.bounds.height();
}

qreal BlockLayout::layOutImages(ImageFlow const& flow, LayoutContext const& context) {
  if (!slice_.isFirst) inner_.moveTop(imageGap);
  auto start = slice_.start;
  auto place = inner_.topLeft();
  qreal lineHeight = 0;
  auto const wrap = [&] {
    place = {inner_.left(), place.y() + lineHeight + (lineHeight > 0 ? imageGap : 0)};
    lineHeight = 0;
  };
  auto const take = [&](QSizeF size) {
    if (place.x() > inner_.left() && place.x() + size.width() > inner_.right()) wrap();
    QRectF const rect(place, size);
    place.rx() += size.width() + imageGap;
    lineHeight = std::max(lineHeight, size.height());
    return rect;
  };
  for (auto item = slice_.from.item; item < slice_.to.item; ++item) {
    auto const* image = std::get_if<RawImageData>(&flow[item]);
    if (!image) {
      wrap();
      continue;
    }
    auto const shown = context.shown(*image, ImagePlace::block);
    auto const next = start + QString::fromStdString(image->alt).size() + 1;
    if (shown.isLoaded()) {
      pictures_.push_back(
          {take(shown.sizeWithin(inner_.width())), shown.image, image->destination, start, next});
    } else {
      std::vector<InlineRun> const alt = {{image->alt, block_.drawable.text, image->destination}};
      TextPiece piece(alt, block_.drawable, context, inner_.width(), start);
      piece.layOut(inner_.width(), TextPiece::Wrapping::anywhere);
      piece.place =
          take({std::min(piece.naturalWidth(), inner_.width()), piece.height()}).topLeft();
      pieces_.push_back(std::move(piece));
    }
    start = next;
  }
  return std::ceil(place.y() + lineHeight - inner_.top());
}

void BlockLayout::addMarkers(LayoutContext const& context) {
  // Text that has to stand further out takes its markers with it.
  auto const outwards = std::round(block_.leading) - room_.left();
  for (auto const& marker : block_.markers) {
    auto const baseline =
        pieces_.empty() ? std::optional<qreal>() : pieces_.front().firstBaseline();
    QFontMetricsF const metrics(fontOf(marker.drawable.text.font));
    auto const right = marker.left + marker.width - outwards;
    if (!marker.drawable.symbol.empty()) {
      auto const size = std::round(metrics.ascent() * symbolScale);
      auto const bottom = std::round(baseline.value_or(metrics.ascent()) + size * 0.13);
      symbols_.push_back({QRectF(right - size, bottom - size, size, size),
                          context.colors.of(marker.drawable.text.foreground),
                          marker.drawable.symbol == "checkmark.square.fill"});
      continue;
    }
    std::vector<InlineRun> const label = {{marker.drawable.label, marker.drawable.text}};
    TextPiece piece(label, marker.drawable, context, marker.width, 0);
    piece.layOut(marker.width, TextPiece::Wrapping::never);
    piece.place.setX(right - piece.naturalWidth());
    piece.place.setY(baseline.value_or(piece.firstBaseline()) - piece.firstBaseline());
    markers_.push_back(std::move(piece));
  }
}

qsizetype BlockLayout::positionAt(QPointF point) const {
  auto const distance = [&](TextPiece const& piece) {
    auto const rect = piece.rect();
    auto const x = std::max({rect.left() - point.x(), 0.0, point.x() - rect.right()});
    auto const y = std::max({rect.top() - point.y(), 0.0, point.y() - rect.bottom()});
    return std::hypot(x, y);
  };
  auto const nearest = std::ranges::min_element(pieces_, {}, distance);
  return nearest == pieces_.end() ? -1 : nearest->positionAt(point);
}

std::optional<std::string> BlockLayout::linkAt(QPointF point) const {
  for (auto const& piece : pieces_)
    if (auto link = piece.linkAt(point)) return link;
  for (auto const& picture : pictures_)
    if (picture.rect.contains(point)) return picture.destination;
  return std::nullopt;
}

std::vector<QRectF> BlockLayout::rectsOf(qsizetype from, qsizetype to) const {
  std::vector<QRectF> rects;
  for (auto const& piece : pieces_)
    for (auto const& rect : piece.rectsOf(from, to)) rects.push_back(rect);
  for (auto const& picture : pictures_)
    if (from < picture.end && (picture.start < to || picture.start == from))
      rects.push_back(picture.rect);
  return rects;
}

void BlockLayout::draw(QPainter& painter, MarkdownColors const& colors,
                       std::vector<Highlight> const& highlights, QRectF const& visible,
                       qreal sideways) const {
  for (auto const& symbol : symbols_) drawSymbol(painter, symbol, colors.ground);
  for (auto const& marker : markers_) marker.draw(painter, {}, visible);
  bool const isTable = !table_.rows.empty();
  if (!isTable) drawGround(painter, colors);
  painter.save();
  if (overflow_ > 0 || sideways > 0)
    painter.setClipRect(room_.adjusted(1, 0, -1, 0), Qt::IntersectClip);
  painter.translate(-sideways, 0);
  if (isTable) drawTable(painter, colors, visible);
  for (auto const& picture : pictures_) {
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(picture.rect, picture.image);
  }
  for (auto const& piece : pieces_)
    piece.draw(painter, highlights, visible.translated(sideways, 0));
  painter.restore();
}

QRectF BlockLayout::framed(QRectF const& rect) const {
  // What goes on in another slice has its corners there.
  return rect.adjusted(0, slice_.isFirst ? 0 : -2 * radius, 0, slice_.isLast ? 0 : 2 * radius);
}

void BlockLayout::drawGround(QPainter& painter, MarkdownColors const& colors) const {
  auto const& drawable = block_.drawable;
  if (std::holds_alternative<DrawnBlock::Rule>(block_.content)) {
    if (drawable.border) painter.fillRect(inner_, colors.of(*drawable.border));
    return;
  }
  if (height_ <= 0) return;
  painter.save();
  if (!slice_.isWhole()) painter.setClipRect(room_, Qt::IntersectClip);
  drawBox(painter, framed(room_), {drawable.background, drawable.border, drawable.leadingBar},
          colors);
  painter.restore();
}

void BlockLayout::drawTable(QPainter& painter, MarkdownColors const& colors,
                            QRectF const& visible) const {
  auto const& drawable = block_.drawable;
  if (!slice_.isWhole()) painter.setClipRect(table_.bounds, Qt::IntersectClip);
  auto const bounds = framed(table_.bounds);
  QPainterPath outline;
  outline.addRoundedRect(bounds.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
  drawBox(painter, bounds, {drawable.background, {}, {}}, colors);
  painter.save();
  painter.setClipPath(outline, Qt::IntersectClip);
  drawCells(painter, colors, visible);
  painter.restore();
  if (!drawable.border) return;
  for (std::size_t row = slice_.isFirst ? 1 : 0; row < table_.rows.size(); ++row) {
    painter.fillRect(
        QRectF(table_.bounds.left(), table_.rows[row].position, table_.bounds.width(), ruleHeight),
        colors.of(*drawable.border));
  }
  painter.strokePath(outline, QPen(colors.of(*drawable.border), 1));
}

void BlockLayout::drawCells(QPainter& painter, MarkdownColors const& colors,
                            QRectF const& visible) const {
  auto const& grid = std::get<DrawnBlock::Grid>(block_.content);
  for (std::size_t row = 0; row < table_.rows.size(); ++row) {
    auto const& cells = grid.rows[slice_.from.item + row];
    auto const& place = table_.rows[row];
    bool const isSeen =
        place.position <= visible.bottom() && place.position + place.size >= visible.top();
    if (!isSeen) continue;
    for (std::size_t column = 0; column < cells.size(); ++column) {
      auto const& drawable = cells[column].drawable;
      QRectF const rect(table_.columns[column].position, place.position,
                        table_.columns[column].size, place.size);
      if (drawable.background) painter.fillRect(rect, colors.of(*drawable.background));
      if (!drawable.border) continue;
      painter.setPen(colors.of(*drawable.border));
      painter.setBrush(Qt::NoBrush);
      painter.drawRect(rect.adjusted(0.5, 0.5, -0.5, -0.5));
    }
  }
}

void BlockLayout::drawSymbol(QPainter& painter, Symbol const& symbol, QColor check) {
  auto const size = symbol.rect.width();
  auto const box = symbol.rect.adjusted(1, 1, -1, -1);
  painter.setPen(QPen(symbol.color, 1.25));
  painter.setBrush(symbol.isFilled ? QBrush(symbol.color) : QBrush(Qt::NoBrush));
  painter.drawRoundedRect(box, size * 0.22, size * 0.22);
  if (!symbol.isFilled) return;
  auto const at = [&](qreal x, qreal y) {
    return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
  };
  painter.setPen(QPen(check, size * 0.13, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(QPolygonF{at(0.24, 0.53), at(0.43, 0.72), at(0.77, 0.3)});
}

}  // namespace vek
