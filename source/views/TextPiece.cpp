// SPDX-License-Identifier: MIT
#include "views/TextPiece.hpp"

#include <algorithm>
#include <cmath>

namespace vek {

namespace {

constexpr qreal unlimited = 1e6;
/// How far the ground of code reaches beyond it.
constexpr qreal groundReach = 2;
constexpr qreal groundRadius = 3;
/// From this scale on letters stand closer.
constexpr double displayScale = 1.4;
constexpr qreal displaySpacing = 98.5;

QString withSeparators(std::string const& text) {
  return QString::fromStdString(text).replace(u'\n', QChar::LineSeparator);
}

}  // namespace

QFont fontOf(FontProperties const& properties) {
  using Variant = FontProperties::FamilyVariant;
  QFont font;
  auto const* custom = std::get_if<FontProperties::Custom>(&properties.family);
  if (properties.familyVariant == Variant::monospaced) {
    font.setFamilies({QStringLiteral("DejaVu Sans Mono"), QStringLiteral("Noto Sans Mono"),
                      QStringLiteral("Noto Color Emoji")});
    font.setStyleHint(QFont::Monospace);
  } else if (custom) {
    font.setFamily(QString::fromStdString(custom->name));
  }
  font.setPixelSize(std::max(1, qRound(properties.size * properties.scale)));
  font.setWeight(static_cast<QFont::Weight>(properties.weight));
  font.setItalic(properties.style == FontProperties::Style::italic);
  if (properties.width) font.setStretch(static_cast<int>(*properties.width));
  if (properties.capsVariant != FontProperties::CapsVariant::normal)
    font.setCapitalization(QFont::SmallCaps);
  if (properties.scale >= displayScale)
    font.setLetterSpacing(QFont::PercentageSpacing, displaySpacing);
  return font;
}

QString textOf(std::vector<InlineRun> const& runs) {
  QString text;
  for (auto const& run : runs) text += withSeparators(run.text);
  return text;
}

TextPiece::TextPiece(std::vector<InlineRun> const& runs, Drawable const& drawable,
                     MarkdownColors const& colors, qsizetype start)
    : start_(start), lineSpacing_(drawable.lineSpacing) {
  QString text;
  QList<QTextLayout::FormatRange> formats;
  for (auto const& run : runs) {
    auto const part = withSeparators(run.text);
    append(run, part, colors, formats, static_cast<int>(text.size()));
    text += part;
  }
  layout_ = std::make_unique<QTextLayout>(text, fontOf(drawable.text.font));
  layout_->setFormats(formats);
}

void TextPiece::append(InlineRun const& run, QString const& text, MarkdownColors const& colors,
                       QList<QTextLayout::FormatRange>& formats, int start) {
  Range const range{start, static_cast<int>(text.size())};
  QTextCharFormat format;
  format.setFont(fontOf(run.attributes.font));
  format.setForeground(colors.of(run.attributes.foreground));
  format.setFontStrikeOut(run.attributes.isStruckThrough);
  format.setFontUnderline(run.attributes.isUnderlined);
  formats.append({range.start, range.length, format});
  if (run.destination) links_.push_back({range, *run.destination});
  if (run.attributes.background) grounds_.push_back({range, colors.of(*run.attributes.background)});
}

void TextPiece::layOut(qreal width, Wrapping wrapping, Qt::Alignment alignment) {
  bool const wraps = wrapping != Wrapping::never;
  QTextOption option(alignment);
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
    line.setPosition({0, std::round(y)});
    y += line.height() + lineSpacing_;
  }
  layout_->endLayout();
  height_ = std::ceil(y - (layout_->lineCount() > 0 ? lineSpacing_ : 0));
  width_ = wraps ? width : naturalWidth();
}

qreal TextPiece::firstBaseline() const {
  return place.y() + (layout_->lineCount() > 0 ? layout_->lineAt(0).ascent() : 0);
}

qsizetype TextPiece::positionAt(QPointF point) const {
  auto const at = point - place;
  for (int i = 0; i < layout_->lineCount(); ++i) {
    auto const line = layout_->lineAt(i);
    bool const isLast = i + 1 == layout_->lineCount();
    if (!isLast && at.y() >= layout_->lineAt(i + 1).y()) continue;
    auto position = line.xToCursor(at.x());
    // The end of a line that goes on is the beginning of the next one.
    auto const end = line.textStart() + line.textLength();
    if (!isLast && position >= end) position = layout_->previousCursorPosition(end);
    return start_ + position;
  }
  return start_;
}

std::optional<std::string> TextPiece::linkAt(QPointF point) const {
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
  for (int i = 0; first < last && i < layout_->lineCount(); ++i) {
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

void TextPiece::draw(QPainter& painter, std::vector<Highlight> const& highlights) const {
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
    own.append({static_cast<int>(from), static_cast<int>(to - from), format});
  }
  layout_->draw(&painter, place, own);
}

}  // namespace vek
