// SPDX-License-Identifier: MIT
#include "views/DocumentLayout.hpp"

#include <algorithm>
#include <cmath>
#include <ranges>
#include <utility>

#include "views/TableLayout.hpp"

namespace vek {

namespace {

/// So many times the height that is seen stays laid out above and below it.
constexpr qreal kept = 2;
constexpr qreal sliderHeight = 3;

bool anyImage(RawImageData const& /*image*/) {
  return true;
}

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
  sideways_.clear();
  blocks_ = std::move(blocks);
  text_.clear();
  slices_ = slicesOf(blocks_, text_);
  firstSlices_.clear();
  pictured_.clear();
  for (std::size_t slice = 0; slice < slices_.size(); ++slice) {
    auto const block = slices_[slice].block;
    if (slices_[slice].isFirst) firstSlices_.push_back(slice);
    bool const isKnown = !pictured_.empty() && pictured_.back() == block;
    if (!isKnown && hasImage(blocks_[block], slices_[slice], anyImage)) pictured_.push_back(block);
  }
}

void DocumentLayout::setWidth(qreal width) {
  if (std::exchange(width_, width) != width) forgetMeasures();
}

void DocumentLayout::setColors(MarkdownColors const& colors) {
  colors_ = colors;
  layouts_.clear();
}

void DocumentLayout::setImages(ImageProvider images) {
  images_ = std::move(images);
}

void DocumentLayout::imagesChanged(ImageCondition const& hasChanged) {
  auto first = measures_.size();
  for (auto const block : pictured_)
    if (measureAgain(block, hasChanged)) first = std::min(first, firstSlices_[block]);
  for (; first < measures_.size(); ++first) place(first);
}

bool DocumentLayout::measureAgain(std::size_t block, ImageCondition const& hasChanged) {
  bool isChanged = false;
  bool beginsElsewhere = false;
  auto const isConcerned = [&](std::size_t slice) {
    return hasImage(blocks_[block], shownSlice(slice), hasChanged);
  };
  auto const first = firstSlices_[block];
  auto last = first;
  while (last < measures_.size() && slices_[last].block == block) ++last;
  // All rows of a table share its columns.
  bool const isTable = std::holds_alternative<DrawnBlock::Grid>(blocks_[block].content);
  bool const isAll = isTable && std::ranges::any_of(std::views::iota(first, last), isConcerned);
  if (isAll) columnWidths_.erase(block);
  for (auto slice = first; slice < last; ++slice) {
    if (!isAll && !beginsElsewhere && !isConcerned(slice)) continue;
    isChanged = true;
    layouts_.erase(slice);
    auto const end = measures_[slice].end;
    measure(slice);
    beginsElsewhere = measures_[slice].end != end;
  }
  return isChanged;
}

void DocumentLayout::forgetMeasures() {
  measures_.clear();
  layouts_.clear();
  columnWidths_.clear();
  for (auto& [block, sideways] : sideways_) sideways.overflow = 0;
}

qreal DocumentLayout::height() const {
  return measures_.empty() ? 0 : lowerEdge(measures_.size() - 1);
}

void DocumentLayout::measureTo(qreal bottom) {
  seenBottom_ = bottom;
  while (!isComplete() && height() < bottom) measureNext();
}

void DocumentLayout::measureUntil(Clock::time_point end) {
  while (!isComplete() && Clock::now() < end) measureNext();
}

void DocumentLayout::measureNext() {
  auto const next = measures_.size();
  measures_.emplace_back();
  measure(next);
  place(next);
  bool const isSeen = measures_[next].top < seenBottom_;
  if (!isSeen) layouts_.erase(next);
}

void DocumentLayout::measure(std::size_t slice) {
  auto const& shown = layout(slice);
  measures_[slice].height = shown.height();
  measures_[slice].end = shown.end();
  if (shown.overflow() <= 0) return;
  auto& overflow = sideways_[slices_[slice].block].overflow;
  overflow = std::max(overflow, shown.overflow());
}

void DocumentLayout::place(std::size_t slice) {
  auto const above = slice > 0 ? lowerEdge(slice - 1) : 0;
  auto& measure = measures_[slice];
  // What is hidden has no gap, and neither has the first block that is not.
  bool const hasGap = slices_[slice].isFirst && measure.height > 0 && above > 0;
  auto const& block = blockOf(slice);
  auto const padding = slices_[slice].isFirst ? block.paddingAbove : 0;
  measure.top = std::round(above + (hasGap ? block.gapAbove : 0) + padding);
}

BlockSlice DocumentLayout::shownSlice(std::size_t slice) const {
  auto shown = slices_[slice];
  if (!shown.isFirst && slice <= measures_.size()) {
    shown.from = measures_[slice - 1].end.place;
    shown.start = measures_[slice - 1].end.position;
  }
  return shown;
}

BlockLayout const& DocumentLayout::layout(std::size_t slice) {
  if (auto const known = layouts_.find(slice); known != layouts_.end()) return known->second;
  ++layoutCount_;
  auto const block = slices_[slice].block;
  auto const& widths = columnWidthsOf(block);
  return layouts_
      .try_emplace(slice, blocks_[block], shownSlice(slice), width_, widths,
                   LayoutContext{colors_, images_})
      .first->second;
}

std::vector<qreal> const& DocumentLayout::columnWidthsOf(std::size_t block) {
  static std::vector<qreal> const none;
  auto const* grid = std::get_if<DrawnBlock::Grid>(&blocks_[block].content);
  if (!grid) return none;
  if (auto const known = columnWidths_.find(block); known != columnWidths_.end())
    return known->second;
  auto const room = roomOf(blocks_[block], width_);
  return columnWidths_[block] = vek::columnWidths(*grid, room, LayoutContext{colors_, images_});
}

void DocumentLayout::forgetFarFrom(qreal top, qreal bottom) {
  auto const reach = kept * (bottom - top);
  std::erase_if(layouts_, [&](auto const& entry) {
    auto const& measure = measures_[entry.first];
    return measure.top > bottom + reach || measure.bottom() < top - reach;
  });
}

qreal DocumentLayout::lowerEdge(std::size_t slice) const {
  return measures_[slice].bottom() + (slices_[slice].isLast ? blockOf(slice).paddingBelow : 0);
}

std::size_t DocumentLayout::sliceAtHeight(qreal y) const {
  auto const below = std::ranges::upper_bound(measures_, y, {}, &Measure::top);
  return below == measures_.begin() ? 0 : static_cast<std::size_t>(below - measures_.begin()) - 1;
}

std::size_t DocumentLayout::sliceAtPosition(qsizetype position) const {
  auto const all = std::views::iota(std::size_t{0}, slices_.size());
  auto const behind = std::ranges::upper_bound(
      all, position, {}, [&](std::size_t slice) { return shownSlice(slice).start; });
  return behind == all.begin() ? 0 : static_cast<std::size_t>(behind - all.begin()) - 1;
}

DocumentLayout::Sideways DocumentLayout::sidewaysOf(std::size_t slice) const {
  auto const known = sideways_.find(slices_[slice].block);
  if (known == sideways_.end()) return {};
  auto const [moved, overflow] = known->second;
  return {std::min(moved, overflow), overflow};
}

void DocumentLayout::moveSideways(std::size_t slice, qreal by) {
  auto const [moved, overflow] = sidewaysOf(slice);
  sideways_[slices_[slice].block] = {std::clamp(moved + by, 0.0, overflow), overflow};
}

QPointF DocumentLayout::inSlice(std::size_t slice, QPointF point) const {
  return {point.x() + sidewaysOf(slice).moved, point.y() - measures_[slice].top};
}

std::pair<qsizetype, qsizetype> DocumentLayout::textBetween(qreal top, qreal bottom) const {
  if (measures_.empty()) return {};
  auto const next = sliceAtHeight(bottom) + 1;
  return {shownSlice(sliceAtHeight(top)).start,
          next < slices_.size() ? shownSlice(next).start : text_.size()};
}

qsizetype DocumentLayout::positionAt(QPointF point) {
  if (measures_.empty()) return 0;
  auto slice = sliceAtHeight(point.y());
  // In the gap between two blocks the nearer one counts.
  bool const isNearerToNext =
      slice + 1 < measures_.size() &&
      measures_[slice + 1].top - point.y() < point.y() - measures_[slice].bottom();
  if (isNearerToNext) ++slice;
  auto const position = layout(slice).positionAt(inSlice(slice, point));
  return position < 0 ? slices_[slice].start : position;
}

std::optional<std::string> DocumentLayout::linkAt(QPointF point) {
  if (measures_.empty()) return std::nullopt;
  auto const slice = sliceAtHeight(point.y());
  return layout(slice).linkAt(inSlice(slice, point));
}

std::vector<QRectF> DocumentLayout::rectsOf(qsizetype from, qsizetype to) {
  std::vector<QRectF> rects;
  auto const first = sliceAtPosition(from);
  for (auto slice = first; slice < slices_.size(); ++slice) {
    // An image without a text is at a range without a length.
    if (slice > first && shownSlice(slice).start >= to) break;
    while (measures_.size() <= slice) measureNext();
    for (auto const& rect : layout(slice).rectsOf(from, to))
      rects.push_back(rect.translated(-sidewaysOf(slice).moved, measures_[slice].top));
  }
  return rects;
}

bool DocumentLayout::moveSideways(QPointF point, qreal by) {
  if (measures_.empty()) return false;
  auto const slice = sliceAtHeight(point.y());
  if (sidewaysOf(slice).overflow <= 0 || point.y() > measures_[slice].bottom()) return false;
  moveSideways(slice, by);
  return true;
}

void DocumentLayout::reveal(qsizetype from, qsizetype to) {
  auto const rects = rectsOf(from, to);
  if (rects.empty()) return;
  auto const slice = sliceAtPosition(from);
  auto const leading = blockOf(slice).leading;
  auto const beyond = std::max(rects[0].right() - width_ + 2 * barInset, 0.0);
  auto const before = std::min(rects[0].left() - leading - 2 * barInset, 0.0);
  moveSideways(slice, beyond + before);
}

QString DocumentLayout::textToCopy(qsizetype from, qsizetype to) const {
  auto const startOf = [&](std::size_t block) {
    return block < blocks_.size() ? slices_[firstSlices_[block]].start : text_.size();
  };
  QString text;
  auto block = slices_.empty() ? 0 : slices_[sliceAtPosition(from)].block;
  for (; block < blocks_.size() && startOf(block) < to; ++block) {
    auto const first = std::max(from, startOf(block));
    auto const part = text_.mid(first, std::min(to, startOf(block + 1) - 1) - first);
    bool const isParagraph = blocks_[block].gapAbove >= blocks_[block].drawable.text.font.size;
    if (!text.isEmpty()) text += isParagraph ? QStringLiteral("\n\n") : QStringLiteral("\n");
    if (first == startOf(block)) text += markersOf(blocks_[block]);
    text += part;
  }
  return text.remove(QChar::ObjectReplacementCharacter).replace(QChar::LineSeparator, u'\n');
}

void DocumentLayout::draw(QPainter& painter, qreal top, qreal bottom,
                          std::vector<Highlight> const& highlights) {
  measureTo(bottom);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(0, -top);
  auto slice = measures_.empty() ? 0 : sliceAtHeight(top);
  for (; slice < measures_.size() && measures_[slice].top < bottom; ++slice) {
    auto const& shown = layout(slice);
    auto const sideways = sidewaysOf(slice);
    drawFrames(painter, slice);
    painter.save();
    painter.translate(0, measures_[slice].top);
    QRectF const visible(0, top - measures_[slice].top, width_, bottom - top);
    shown.draw(painter, colors_, highlights, visible, sideways.moved);
    painter.restore();
    bool const isLowest = slices_[slice].isLast || measures_[slice].bottom() >= bottom;
    if (sideways.overflow > 0 && isLowest)
      drawSlider(painter, sideways, std::min(measures_[slice].bottom(), bottom));
  }
  forgetFarFrom(top, bottom);
}

void DocumentLayout::drawFrames(QPainter& painter, std::size_t slice) const {
  std::vector<FramePart> parts;
  auto top = measures_[slice].top;
  auto bottom = measures_[slice].bottom();
  auto const next = slice + 1 < measures_.size() ? measures_[slice + 1].top : lowerEdge(slice);
  for (auto const* frame = blockOf(slice).frame.get(); frame; frame = frame->outer.get()) {
    bool const begins = slice == 0 || !blockOf(slice - 1).isIn(*frame);
    bool const ends = slice + 1 == slices_.size() || !blockOf(slice + 1).isIn(*frame);
    if (begins) top -= frame->top;
    if (ends) bottom += frame->bottom;
    bool const isSeen = frame->background || frame->border || frame->leadingBar;
    if (!isSeen) continue;
    parts.push_back(
        {*frame, begins ? top : measures_[slice].top, ends ? bottom : next, begins, ends});
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

void DocumentLayout::drawSlider(QPainter& painter, Sideways const& sideways, qreal bottom) const {
  auto const room = width_ - 2 * barInset;
  auto const whole = width_ + sideways.overflow;
  auto color = colors_.secondary;
  color.setAlphaF(0.45F);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  QRectF const slider(barInset + room * sideways.moved / whole, bottom - sliderHeight - 3,
                      room * width_ / whole, sliderHeight);
  painter.drawRoundedRect(slider, sliderHeight / 2, sliderHeight / 2);
}

}  // namespace vek
