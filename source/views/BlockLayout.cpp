// SPDX-License-Identifier: MIT
#include "views/BlockLayout.hpp"

#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ranges>

#include "views/TableLayout.hpp"

namespace vek {

namespace {

constexpr qreal radius = 6;
/// However deep a block nests, so much stays for its text.
constexpr qreal leastRoom = 80;
constexpr qreal imageGap = 8;
/// A symbol to the capital letters beside it.
constexpr qreal symbolScale = 0.92;

QString altText(ImageFlow const& flow) {
  QStringList texts;
  for (auto const& item : flow) {
    auto const* image = std::get_if<RawImageData>(&item);
    if (image) texts.append(QString::fromStdString(image->alt));
  }
  return texts.join(u'\n');
}

}  // namespace

QString textOf(DrawnBlock const& block) {
  if (auto const* text = std::get_if<DrawnBlock::Text>(&block.content)) return textOf(text->runs);
  if (auto const* grid = std::get_if<DrawnBlock::Grid>(&block.content)) return textOf(*grid);
  if (auto const* flow = std::get_if<ImageFlow>(&block.content)) return altText(*flow);
  return {};
}

bool hasImages(DrawnBlock const& block) {
  auto const isImage = [](InlineRun const& run) { return run.image.has_value(); };
  if (auto const* text = std::get_if<DrawnBlock::Text>(&block.content))
    return std::ranges::any_of(text->runs, isImage);
  if (auto const* grid = std::get_if<DrawnBlock::Grid>(&block.content)) {
    return std::ranges::any_of(std::views::join(grid->rows), [&](DrawnBlock::Cell const& cell) {
      return std::ranges::any_of(cell.runs, isImage);
    });
  }
  return std::holds_alternative<ImageFlow>(block.content);
}

BlockLayout::BlockLayout(DrawnBlock const& block, qreal width, LayoutContext const& context,
                         qsizetype start)
    : block_(block) {
  auto const leading = std::round(std::min(block.leading, std::max(0.0, width - leastRoom)));
  auto const trailing = std::min(block.trailing, std::max(0.0, width - leading - leastRoom));
  room_ = QRectF(leading, 0, std::max(1.0, width - leading - trailing), 0);
  if (auto const* text = std::get_if<DrawnBlock::Text>(&block.content)) {
    layOutText(*text, context, start);
  } else if (auto const* grid = std::get_if<DrawnBlock::Grid>(&block.content)) {
    layOutGrid(*grid, context, start);
  } else if (auto const* flow = std::get_if<ImageFlow>(&block.content)) {
    layOutImages(*flow, context, start);
  } else {
    height_ = 1;
  }
  room_.setHeight(height_);
  addMarkers(context);
}

void BlockLayout::layOutText(DrawnBlock::Text const& text, LayoutContext const& context,
                             qsizetype start) {
  auto const& padding = block_.drawable.padding;
  auto const width = std::max(1.0, room_.width() - padding.leading - padding.trailing);
  auto& piece = pieces_.emplace_back(text.runs, block_.drawable, context, width, start);
  piece.place = {std::round(room_.left() + padding.leading), std::round(padding.top)};
  piece.layOut(width, block_.drawable.isScrollable ? TextPiece::Wrapping::never
                                                   : TextPiece::Wrapping::anywhere);
  height_ = std::round(padding.top) + piece.height() + std::round(padding.bottom);
  if (block_.drawable.isScrollable) overflow_ = std::max(0.0, piece.naturalWidth() - width);
}

void BlockLayout::layOutGrid(DrawnBlock::Grid const& grid, LayoutContext const& context,
                             qsizetype start) {
  auto table = TableLayout::of(grid, room_.topLeft(), room_.width(), context, start);
  table_ = std::move(table.bounds);
  pieces_ = std::move(table.pieces);
  height_ = table_.bounds.height();
  overflow_ = std::max(0.0, table_.bounds.width() - room_.width());
}

void BlockLayout::layOutImages(ImageFlow const& flow, LayoutContext const& context,
                               qsizetype start) {
  auto place = room_.topLeft();
  qreal lineHeight = 0;
  auto const wrap = [&] {
    place = {room_.left(), place.y() + lineHeight + (lineHeight > 0 ? imageGap : 0)};
    lineHeight = 0;
  };
  auto const take = [&](QSizeF size) {
    if (place.x() > room_.left() && place.x() + size.width() > room_.right()) wrap();
    QRectF const rect(place, size);
    place.rx() += size.width() + imageGap;
    lineHeight = std::max(lineHeight, size.height());
    return rect;
  };
  auto const placeholder = block_.drawable.styled(
      {.style = FontProperties::Style::italic, .foreground = ThemeColor::secondary});
  for (auto const& item : flow) {
    auto const* image = std::get_if<RawImageData>(&item);
    if (!image) {
      wrap();
      continue;
    }
    auto const shown = context.shown(*image);
    if (shown.isLoaded()) {
      pictures_.push_back({take(shown.sizeWithin(room_.width())), shown.image, image->destination});
    } else if (shown.isShown) {
      std::vector<InlineRun> const alt = {{image->alt, placeholder.text, image->destination}};
      TextPiece piece(alt, placeholder, context, room_.width(), start);
      piece.layOut(room_.width(), TextPiece::Wrapping::anywhere);
      piece.place = take({std::min(piece.naturalWidth(), room_.width()), piece.height()}).topLeft();
      pieces_.push_back(std::move(piece));
    }
    start += QString::fromStdString(image->alt).size() + 1;
  }
  height_ = std::ceil(place.y() + lineHeight);
}

void BlockLayout::addMarkers(LayoutContext const& context) {
  for (auto const& marker : block_.markers) {
    auto const baseline =
        pieces_.empty() ? std::optional<qreal>() : pieces_.front().firstBaseline();
    QFontMetricsF const metrics(fontOf(marker.drawable.text.font));
    auto const right = marker.left + marker.width;
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

void BlockLayout::draw(QPainter& painter, MarkdownColors const& colors,
                       std::vector<Highlight> const& highlights, QRectF const& visible,
                       qreal sideways) const {
  for (auto const& symbol : symbols_) drawSymbol(painter, symbol, colors.ground);
  for (auto const& marker : markers_) marker.draw(painter, {}, visible);
  if (std::holds_alternative<DrawnBlock::Rule>(block_.content)) {
    painter.fillRect(QRectF(room_.left(), 0, room_.width(), 1), colors.border);
    return;
  }
  drawGround(painter, colors);
  painter.save();
  if (overflow_ > 0) painter.setClipRect(room_, Qt::IntersectClip);
  painter.translate(-sideways, 0);
  if (!table_.rows.empty()) drawTable(painter, colors);
  for (auto const& picture : pictures_) {
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(picture.rect, picture.image);
  }
  for (auto const& piece : pieces_)
    piece.draw(painter, highlights, visible.translated(sideways, 0));
  painter.restore();
}

void BlockLayout::drawGround(QPainter& painter, MarkdownColors const& colors) const {
  bool const isCode = block_.drawable.isScrollable && block_.drawable.background;
  if (!isCode) return;
  painter.setPen(colors.of(block_.drawable.border.value_or(*block_.drawable.background)));
  painter.setBrush(colors.of(*block_.drawable.background));
  painter.drawRoundedRect(room_.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

void BlockLayout::drawTable(QPainter& painter, MarkdownColors const& colors) const {
  auto const bounds = table_.bounds.adjusted(0.5, 0.5, -0.5, -0.5);
  QPainterPath outline;
  outline.addRoundedRect(bounds, radius, radius);
  auto const& header = table_.rows.front();
  QPainterPath head;
  head.addRect(QRectF(bounds.left(), header.position, bounds.width(), header.size));
  if (block_.drawable.background)
    painter.fillPath(outline.intersected(head), colors.of(*block_.drawable.background));
  for (std::size_t row = 1; row < table_.rows.size(); ++row) {
    painter.fillRect(QRectF(bounds.left(), table_.rows[row].position, bounds.width(), 1),
                     colors.border);
  }
  if (block_.drawable.border)
    painter.strokePath(outline, QPen(colors.of(*block_.drawable.border), 1));
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
