// SPDX-License-Identifier: MIT
#include "views/FadingText.hpp"

#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace vek {

namespace {

/// A paragraph is laid out in blocks of so many characters, counted from its beginning.
constexpr qsizetype longestBlock = 2000;
/// New text of more than so many times the own height is shown without a movement.
constexpr qreal longestMovement = 2;

qsizetype commonLength(QString const& one, QString const& other) {
  return std::mismatch(one.begin(), one.end(), other.begin(), other.end()).first - one.begin();
}

}  // namespace

FadingText::FadingText(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setFillColor(Qt::transparent);
}

qreal FadingText::lineHeight() const {
  return QFontMetricsF(font_).lineSpacing();
}

void FadingText::setText(QString text) {
  if (text == text_) return;
  auto const common = commonLength(text, text_);
  auto const changedFrom = common > 0 ? text_.lastIndexOf(u'\n', common - 1) + 1 : 0;
  auto const previous = heightFrom(changedFrom);
  text_ = std::move(text);
  forgetLayout();
  layOut(scroll_ + (1 + longestMovement) * height());
  auto const now = heightFrom(changedFrom);
  Q_EMIT textChanged();
  update();
  auto const growth = now.value_or(0) - previous.value_or(0);
  bool const moves = now && previous && growth <= longestMovement * height();
  setScroll(moves ? scroll_ + std::max(growth, 0.0) : 0);
  if (scroll_ > 0) Q_EMIT grew();
}

void FadingText::setColor(QColor color) {
  if (std::exchange(color_, color) == color) return;
  Q_EMIT colorChanged();
  update();
}

void FadingText::setPixelSize(int size) {
  if (size == pixelSize()) return;
  font_.setPixelSize(size);
  forgetLayout();
  Q_EMIT pixelSizeChanged();
  update();
}

void FadingText::setScroll(qreal scroll) {
  layOut(scroll + height());
  auto const limit = std::max(0.0, blocksHeight_ - height());
  scroll = std::clamp(scroll, 0.0, limit);
  if (std::exchange(scroll_, scroll) == scroll) return;
  Q_EMIT scrollChanged();
  update();
}

void FadingText::geometryChange(QRectF const& now, QRectF const& before) {
  QQuickPaintedItem::geometryChange(now, before);
  if (now.width() != before.width()) forgetLayout();
}

void FadingText::forgetLayout() {
  blocks_.clear();
  blocksHeight_ = 0;
}

std::optional<qreal> FadingText::heightFrom(qsizetype start) const {
  if (!blocks_.empty() && blocks_.front().start > start) return std::nullopt;
  qreal height = 0;
  for (auto const& block : blocks_) {
    if (block.start >= start) height += block.height;
  }
  return height;
}

qsizetype FadingText::startOfBlock(qsizetype end) const {
  auto const paragraph = end > 0 ? text_.lastIndexOf(u'\n', end - 1) + 1 : 0;
  if (end - paragraph <= longestBlock) return paragraph;
  auto const cut = paragraph + (end - 1 - paragraph) / longestBlock * longestBlock;
  auto const word = text_.lastIndexOf(u' ', cut - 1) + 1;
  return word > paragraph ? word : cut;
}

FadingText::Block FadingText::makeBlock(qsizetype start, qsizetype end) const {
  Block block{start, std::make_unique<QTextLayout>(text_.mid(start, end - start), font_), 0};
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  block.layout->setTextOption(option);
  block.layout->beginLayout();
  for (auto line = block.layout->createLine(); line.isValid(); line = block.layout->createLine()) {
    line.setLineWidth(width());
    line.setPosition({0, block.height});
    block.height += lineHeight();
  }
  block.layout->endLayout();
  return block;
}

void FadingText::layOut(qreal height) {
  if (width() <= 0 || text_.isEmpty()) return;
  while (blocksHeight_ < height && (blocks_.empty() || blocks_.front().start > 0)) {
    auto end = blocks_.empty() ? text_.size() : blocks_.front().start;
    // The newline before a paragraph belongs to none.
    if (!blocks_.empty() && text_[end - 1] == u'\n') --end;
    blocks_.push_front(makeBlock(startOfBlock(end), end));
    blocksHeight_ += blocks_.front().height;
  }
}

void FadingText::paint(QPainter* painter) {
  layOut(scroll_ + height());
  painter->setPen(color_);
  auto bottom = height() + scroll_;
  for (auto block = blocks_.rbegin(); block != blocks_.rend() && bottom > 0; ++block) {
    bottom -= block->height;
    if (bottom < height()) block->layout->draw(painter, {0, bottom});
  }
  QLinearGradient mask(0, height(), 0, 0);
  for (auto const& [place, opacity] :
       {std::pair{0.0, 1.0}, {1.0 / 3, 1.0}, {2.0 / 3, 0.5}, {1.0, 0.0}}) {
    mask.setColorAt(place, QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity)));
  }
  painter->setCompositionMode(QPainter::CompositionMode_DestinationIn);
  painter->fillRect(boundingRect(), mask);
}

}  // namespace vek
