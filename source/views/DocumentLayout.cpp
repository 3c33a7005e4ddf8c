// SPDX-License-Identifier: MIT
#include "views/DocumentLayout.hpp"

#include <algorithm>
#include <cmath>
#include <ranges>
#include <utility>

namespace vek {

namespace {

/// So many times the height that is seen stays laid out above and below it.
constexpr qreal kept = 2;
constexpr qreal sliderHeight = 3;

QString markersOf(DrawnBlock const& block) {
  QString text;
  for (auto const& marker : block.markers) {
    auto const& drawable = marker.drawable;
    text += drawable.symbol.empty()       ? QString::fromStdString(drawable.label)
            : drawable.symbol == "square" ? QStringLiteral("☐")
                                          : QStringLiteral("☑");
    text += u' ';
  }
  return text;
}

}  // namespace

void DocumentLayout::setBlocks(std::vector<DrawnBlock> blocks) {
  forgetMeasures();
  blocks_ = std::move(blocks);
  sideways_.assign(blocks_.size(), 0);
  starts_.clear();
  starts_.reserve(blocks_.size());
  text_.clear();
  for (auto const& block : blocks_) {
    starts_.push_back(text_.size());
    text_ += textOf(block) + u'\n';
  }
}

void DocumentLayout::setWidth(qreal width) {
  if (std::exchange(width_, width) != width) forgetMeasures();
}

void DocumentLayout::setColors(MarkdownColors const& colors) {
  colors_ = colors;
  layouts_.clear();
  layouts_.resize(blocks_.size());
}

void DocumentLayout::setImages(ImageProvider images) {
  images_ = std::move(images);
}

void DocumentLayout::imagesChanged() {
  if (std::ranges::any_of(blocks_, hasImages)) forgetMeasures();
}

void DocumentLayout::forgetMeasures() {
  tops_.clear();
  heights_.clear();
  layouts_.clear();
}

qreal DocumentLayout::height() const {
  return tops_.empty() ? 0 : lowerEdge(tops_.size() - 1);
}

void DocumentLayout::measureTo(qreal bottom) {
  while (!isComplete() && height() < bottom) measureNext();
}

void DocumentLayout::measureUntil(Clock::time_point end) {
  while (!isComplete() && Clock::now() < end) measureNext();
}

void DocumentLayout::measureNext() {
  auto const next = tops_.size();
  layouts_.resize(blocks_.size());
  auto const& measured = layout(next);
  // What is hidden has no gap, and neither has the first block that is not.
  bool const hasGap = measured.height() > 0 && height() > 0;
  auto const gap = (hasGap ? blocks_[next].gapAbove : 0) + blocks_[next].paddingAbove;
  tops_.push_back(std::round(height() + gap));
  heights_.push_back(measured.height());
  sideways_[next] = std::min(sideways_[next], measured.overflow());
}

BlockLayout const& DocumentLayout::layout(std::size_t block) {
  auto& layout = layouts_[block];
  if (!layout) {
    layout = std::make_unique<BlockLayout>(blocks_[block], width_, LayoutContext{colors_, images_},
                                           starts_[block]);
  }
  return *layout;
}

void DocumentLayout::forgetFarFrom(qreal top, qreal bottom) {
  auto const reach = kept * (bottom - top);
  for (std::size_t i = 0; i < tops_.size(); ++i)
    if (tops_[i] > bottom + reach || tops_[i] + heights_[i] < top - reach) layouts_[i].reset();
}

qreal DocumentLayout::lowerEdge(std::size_t block) const {
  return tops_[block] + heights_[block] + blocks_[block].paddingBelow;
}

std::size_t DocumentLayout::blockAtHeight(qreal y) const {
  auto const below = std::ranges::upper_bound(tops_, y);
  return below == tops_.begin() ? 0 : static_cast<std::size_t>(below - tops_.begin()) - 1;
}

std::size_t DocumentLayout::blockAtPosition(qsizetype position) const {
  auto const behind = std::ranges::upper_bound(starts_, position);
  return behind == starts_.begin() ? 0 : static_cast<std::size_t>(behind - starts_.begin()) - 1;
}

QPointF DocumentLayout::inBlock(std::size_t block, QPointF point) const {
  return {point.x() + sideways_[block], point.y() - tops_[block]};
}

std::pair<qsizetype, qsizetype> DocumentLayout::textBetween(qreal top, qreal bottom) const {
  if (tops_.empty()) return {};
  auto const next = blockAtHeight(bottom) + 1;
  return {starts_[blockAtHeight(top)], next < starts_.size() ? starts_[next] : text_.size()};
}

qsizetype DocumentLayout::positionAt(QPointF point) {
  if (tops_.empty()) return 0;
  auto block = blockAtHeight(point.y());
  // In the gap between two blocks the nearer one counts.
  bool const isNearerToNext =
      block + 1 < tops_.size() &&
      tops_[block + 1] - point.y() < point.y() - tops_[block] - heights_[block];
  if (isNearerToNext) ++block;
  auto const position = layout(block).positionAt(inBlock(block, point));
  return position < 0 ? starts_[block] : position;
}

std::optional<std::string> DocumentLayout::linkAt(QPointF point) {
  if (tops_.empty()) return std::nullopt;
  auto const block = blockAtHeight(point.y());
  return layout(block).linkAt(inBlock(block, point));
}

std::vector<QRectF> DocumentLayout::rectsOf(qsizetype from, qsizetype to) {
  std::vector<QRectF> rects;
  for (auto block = blockAtPosition(from); block < blocks_.size() && starts_[block] < to; ++block) {
    while (tops_.size() <= block) measureNext();
    for (auto const& piece : layout(block).pieces())
      for (auto const& rect : piece.rectsOf(from, to))
        rects.push_back(rect.translated(-sideways_[block], tops_[block]));
  }
  return rects;
}

bool DocumentLayout::moveSideways(QPointF point, qreal by) {
  if (tops_.empty()) return false;
  auto const block = blockAtHeight(point.y());
  auto const overflow = layout(block).overflow();
  if (overflow <= 0 || point.y() > tops_[block] + heights_[block]) return false;
  sideways_[block] = std::clamp(sideways_[block] + by, 0.0, overflow);
  return true;
}

void DocumentLayout::reveal(qsizetype from, qsizetype to) {
  auto const rects = rectsOf(from, to);
  if (rects.empty()) return;
  auto const block = blockAtPosition(from);
  auto const overflow = layout(block).overflow();
  auto const beyond = std::max(rects[0].right() - width_ + 2 * barInset, 0.0);
  auto const before = std::min(rects[0].left() - blocks_[block].leading - 2 * barInset, 0.0);
  sideways_[block] = std::clamp(sideways_[block] + beyond + before, 0.0, overflow);
}

QString DocumentLayout::textToCopy(qsizetype from, qsizetype to) const {
  QString text;
  for (auto block = blockAtPosition(from); block < blocks_.size() && starts_[block] < to; ++block) {
    auto const end = block + 1 < blocks_.size() ? starts_[block + 1] : text_.size();
    auto const first = std::max(from, starts_[block]);
    auto const part = text_.mid(first, std::min(to, end - 1) - first);
    bool const isParagraph = blocks_[block].gapAbove >= blocks_[block].drawable.text.font.size;
    if (!text.isEmpty()) text += isParagraph ? QStringLiteral("\n\n") : QStringLiteral("\n");
    if (first == starts_[block]) text += markersOf(blocks_[block]);
    text += part;
  }
  return text.remove(QChar::ObjectReplacementCharacter).replace(QChar::LineSeparator, u'\n');
}

void DocumentLayout::draw(QPainter& painter, qreal top, qreal bottom,
                          std::vector<Highlight> const& highlights) {
  measureTo(bottom);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(0, -top);
  auto block = tops_.empty() ? 0 : blockAtHeight(top);
  for (; block < tops_.size() && tops_[block] < bottom; ++block) {
    auto const& shown = layout(block);
    drawFrames(painter, block);
    painter.save();
    painter.translate(0, tops_[block]);
    QRectF const visible(0, top - tops_[block], width_, bottom - top);
    shown.draw(painter, colors_, highlights, visible, sideways_[block]);
    if (shown.overflow() > 0) drawSlider(painter, colors_, shown, width_, sideways_[block]);
    painter.restore();
  }
  forgetFarFrom(top, bottom);
}

void DocumentLayout::drawFrames(QPainter& painter, std::size_t block) const {
  std::vector<FramePart> parts;
  auto top = tops_[block];
  auto bottom = top + heights_[block];
  for (auto const* frame = blocks_[block].frame.get(); frame; frame = frame->outer.get()) {
    bool const begins = block == 0 || !blocks_[block - 1].isIn(*frame);
    bool const ends = block + 1 == blocks_.size() || !blocks_[block + 1].isIn(*frame);
    if (begins) top -= frame->top;
    if (ends) bottom += frame->bottom;
    bool const isSeen = frame->background || frame->border || frame->leadingBar;
    if (isSeen)
      parts.push_back({*frame, begins ? top : lowerEdge(block - 1), bottom, begins, ends});
  }
  for (auto const& part : std::views::reverse(parts)) drawFrame(painter, part);
}

void DocumentLayout::drawFrame(QPainter& painter, FramePart const& part) const {
  auto const& frame = part.frame;
  auto const left = std::round(std::min(frame.leading, width_ - barInset - barWidth));
  QRectF const rect(left, part.top, std::max(1.0, width_ - frame.trailing - left),
                    part.bottom - part.top);
  // What goes on has its corners where nobody sees them.
  auto const beyond = rect.height() + 2 * barInset;
  painter.save();
  painter.setClipRect(rect, Qt::IntersectClip);
  drawBox(painter, rect.adjusted(0, part.begins ? 0 : -beyond, 0, part.ends ? 0 : beyond),
          {frame.background, frame.border, frame.leadingBar}, colors_);
  painter.restore();
}

void DocumentLayout::drawSlider(QPainter& painter, MarkdownColors const& colors,
                                BlockLayout const& layout, qreal width, qreal sideways) {
  auto const room = width - 2 * barInset;
  auto const whole = width + layout.overflow();
  auto color = colors.secondary;
  color.setAlphaF(0.45F);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  QRectF const slider(barInset + room * sideways / whole, layout.height() - sliderHeight - 3,
                      room * width / whole, sliderHeight);
  painter.drawRoundedRect(slider, sliderHeight / 2, sliderHeight / 2);
}

}  // namespace vek
