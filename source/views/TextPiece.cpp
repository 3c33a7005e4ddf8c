// SPDX-License-Identifier: MIT
#include "views/TextPiece.hpp"

#include <algorithm>
#include <cmath>

#include "views/Fonts.hpp"

namespace vek {

namespace {

constexpr qreal unlimited = 1e6;
/// How far the ground of code reaches beyond it.
constexpr qreal groundReach = 2;
constexpr qreal groundRadius = 3;

QTextCharFormat formatOf(InlineRun const& run, QFont const& font, MarkdownColors const& colors) {
  auto const& attributes = run.attributes;
  QTextCharFormat format;
  format.setFont(font);
  format.setFontStrikeOut(attributes.isStruckThrough);
  format.setFontUnderline(attributes.isUnderlined);
  // In place of an image that is not there.
  if (run.image) format.setFontItalic(true);
  format.setForeground(run.image ? colors.secondary : colors.of(attributes.foreground));
  return format;
}

/// A font whose blanks are this wide.
QFont spacedFont(QFont font, qreal width) {
  font.setLetterSpacing(QFont::AbsoluteSpacing, 0);
  auto const blank = QFontMetricsF(font).horizontalAdvance(QChar::Nbsp);
  font.setLetterSpacing(QFont::AbsoluteSpacing, width - blank);
  return font;
}

}  // namespace

QString documentText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
      .replace(u'\n', QChar::LineSeparator);
}

QString textOf(InlineRun const& run) {
  bool const isUntitled = run.image && run.text.empty();
  return isUntitled ? QString(QChar::ObjectReplacementCharacter) : documentText(run.text);
}

QString textOf(std::vector<InlineRun> const& runs) {
  QString text;
  for (auto const& run : runs) text += textOf(run);
  return text;
}

TextPiece::TextPiece(std::vector<InlineRun> const& runs, Drawable const& drawable,
                     LayoutContext const& context, qreal room, qsizetype start)
    : start_(start), lineSpacing_(drawable.lineSpacing) {
  QString text;
  QList<QTextLayout::FormatRange> formats;
  for (auto const& run : runs) {
    auto part = textOf(run);
    Range const range{static_cast<int>(text.size()), static_cast<int>(part.size())};
    auto fonts = fontsOf(run.attributes.font, part);
    auto const shown = run.image ? context.shown(*run.image, ImagePlace::inLine) : ShownImage{};
    if (shown.isLoaded()) {
      // Blanks that together are as wide keep its place, so that positions do not change by it.
      pictures_.push_back({range, shown.image, shown.sizeWithin(room), run.destination});
      part.fill(QChar::Nbsp);
      auto const blankWidth = pictures_.back().size.width() / range.length;
      fonts = {{0, range.length, spacedFont(fontOf(run.attributes.font), blankWidth)}};
    }
    for (auto const& [from, length, font] : fonts)
      formats.append({range.start + from, length, formatOf(run, font, context.colors)});
    if (run.destination) links_.push_back({range, *run.destination});
    if (run.attributes.background)
      grounds_.push_back({range, context.colors.of(*run.attributes.background)});
    text += part;
  }
  length_ = text.size();
  layout_ = std::make_unique<QTextLayout>(text, fontOf(drawable.text.font));
  // Or the glyphs would be found anew whenever it is drawn.
  layout_->setCacheEnabled(true);
  layout_->setFormats(formats);
}

void TextPiece::layOut(qreal width, Wrapping wrapping, Qt::Alignment alignment,
                       Qt::LayoutDirection direction) {
  bool const wraps = wrapping != Wrapping::never;
  QTextOption option(alignment);
  option.setTextDirection(direction);
  option.setWrapMode(wrapping == Wrapping::never ? QTextOption::ManualWrap
                     : wrapping == Wrapping::betweenWords
                         ? QTextOption::WordWrap
                         : QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTabStopDistance(4 * QFontMetricsF(layout_->font()).horizontalAdvance(u' '));
  layout_->setTextOption(option);
  qreal y = 0;
  layout_->beginLayout();
  for (auto line = layout_->createLine(); line.isValid(); line = layout_->createLine()) {
    line.setLineWidth(wraps ? width : unlimited);
    y += reachAbove(line);
    line.setPosition({0, std::round(y)});
    y += line.height() + lineSpacing_;
  }
  layout_->endLayout();
  lineCount_ = layout_->lineCount();
  height_ = std::ceil(y - (lineCount_ > 0 ? lineSpacing_ : 0));
  width_ = wraps ? width : naturalWidth();
  for (auto& picture : pictures_) {
    auto const line = layout_->lineForTextPosition(picture.range.start);
    auto const end = picture.range.start + picture.range.length;
    auto const left = std::min(line.cursorToX(picture.range.start), line.cursorToX(end));
    auto const baseline = line.y() + line.ascent();
    picture.rect = {QPointF(left, baseline - picture.size.height()), picture.size};
  }
}

void TextPiece::leaveLastLine() {
  if (lineCount_ < 2) return;
  auto last = layout_->lineAt(--lineCount_);
  auto const above = layout_->lineAt(lineCount_ - 1);
  length_ = last.textStart();
  height_ = std::ceil(above.y() + above.height());
  // Below all that is drawn.
  last.setPosition({0, unlimited});
  std::erase_if(pictures_, [&](Picture const& picture) { return picture.range.start >= length_; });
}

qreal TextPiece::reachAbove(QTextLine const& line) const {
  qreal reach = 0;
  for (auto const& picture : pictures_) {
    bool const isHere = picture.range.start >= line.textStart() &&
                        picture.range.start < line.textStart() + line.textLength();
    if (isHere) reach = std::max(reach, std::ceil(picture.size.height() - line.ascent()));
  }
  return reach;
}

qreal TextPiece::firstBaseline() const {
  if (lineCount_ == 0) return place.y();
  auto const line = layout_->lineAt(0);
  return place.y() + line.y() + line.ascent();
}

qsizetype TextPiece::positionAt(QPointF point) const {
  auto const at = point - place;
  for (int i = 0; i < lineCount_; ++i) {
    auto const line = layout_->lineAt(i);
    bool const isLast = i + 1 == lineCount_;
    if (!isLast && at.y() >= line.y() + line.height() + lineSpacing_) continue;
    auto position = line.xToCursor(at.x());
    // The end of a line that goes on is the beginning of the next one.
    auto const end = line.textStart() + line.textLength();
    if (!isLast && position >= end) position = layout_->previousCursorPosition(end);
    return start_ + position;
  }
  return start_;
}

std::optional<std::string> TextPiece::linkAt(QPointF point) const {
  for (auto const& picture : pictures_)
    if (picture.rect.translated(place).contains(point)) return picture.destination;
  for (auto const& link : links_) {
    auto const from = start_ + link.range.start;
    for (auto const& rect : rectsOf(from, from + link.range.length))
      if (rect.contains(point)) return link.destination;
  }
  return std::nullopt;
}

std::vector<QRectF> TextPiece::rectsOf(qsizetype from, qsizetype to) const {
  auto const first = static_cast<int>(std::clamp<qsizetype>(from - start_, 0, length()));
  auto const last = static_cast<int>(std::clamp<qsizetype>(to - start_, 0, length()));
  std::vector<QRectF> rects;
  for (int i = 0; first < last && i < lineCount_; ++i) {
    auto const line = layout_->lineAt(i);
    auto const lineEnd = line.textStart() + line.textLength();
    if (lineEnd <= first || line.textStart() >= last) continue;
    auto const left = line.cursorToX(std::max(first, line.textStart()));
    auto const right = line.cursorToX(std::min(last, lineEnd));
    rects.emplace_back(place.x() + std::min(left, right), place.y() + line.y(),
                       std::abs(right - left), line.height());
  }
  return rects;
}

void TextPiece::draw(QPainter& painter, std::vector<Highlight> const& highlights,
                     QRectF const& visible) const {
  if (place.y() > visible.bottom() || place.y() + height_ < visible.top()) return;
  painter.setPen(Qt::NoPen);
  for (auto const& ground : grounds_) {
    painter.setBrush(ground.color);
    auto const from = start_ + ground.range.start;
    for (auto const& rect : rectsOf(from, from + ground.range.length)) {
      painter.drawRoundedRect(rect.adjusted(-groundReach, 0, groundReach, 0), groundRadius,
                              groundRadius);
    }
  }
  QList<QTextLayout::FormatRange> own;
  for (auto const& highlight : highlights) {
    auto const from = std::max<qsizetype>(highlight.from - start_, 0);
    auto const to = std::min<qsizetype>(highlight.to - start_, length());
    if (from >= to) continue;
    QTextCharFormat format;
    format.setBackground(highlight.color);
    format.setForeground(highlight.text);
    own.append({static_cast<int>(from), static_cast<int>(to - from), format});
  }
  layout_->draw(&painter, place, own, visible);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  for (auto const& picture : pictures_)
    painter.drawImage(picture.rect.translated(place), picture.image);
}

}  // namespace vek
