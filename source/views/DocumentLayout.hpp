// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "views/BlockLayout.hpp"

namespace vek {

/// The blocks of a document for one width, long ones in slices. They are measured from the top on,
/// as far as is asked for; those far from what is seen give back what drawing them takes, and are
/// laid out anew when they come into view.
class DocumentLayout {
 public:
  using Clock = std::chrono::steady_clock;

  void setBlocks(std::vector<DrawnBlock> blocks);
  void setWidth(qreal width);
  void setColors(MarkdownColors const& colors);
  void setImages(ImageProvider images);
  /// Blocks with images of which this is true are measured again.
  void imagesChanged(ImageCondition const& hasChanged);

  [[nodiscard]] std::vector<DrawnBlock> const& blocks() const { return blocks_; }
  /// Where the text of a block begins in that of the document.
  [[nodiscard]] qsizetype startOf(std::size_t block) const {
    return slices_[firstSlices_[block]].start;
  }
  [[nodiscard]] MarkdownColors const& colors() const { return colors_; }
  /// Of what is measured so far.
  [[nodiscard]] qreal height() const;
  [[nodiscard]] bool isComplete() const { return measures_.size() == slices_.size(); }
  /// How many slices were laid out so far, again or for the first time.
  [[nodiscard]] std::size_t layoutCount() const { return layoutCount_; }
  /// Measures until the document reaches down to `bottom`.
  void measureTo(qreal bottom);
  /// Measures until the time is up.
  void measureUntil(Clock::time_point end);

  /// The text of all blocks, with a break behind each.
  [[nodiscard]] QString const& text() const { return text_; }
  /// A part of the text as it is pasted elsewhere: items with their markers, paragraphs apart.
  [[nodiscard]] QString textToCopy(qsizetype from, qsizetype to) const;

  /// The text of the measured blocks between two heights, as its first and last position.
  [[nodiscard]] std::pair<qsizetype, qsizetype> textBetween(qreal top, qreal bottom) const;
  [[nodiscard]] qsizetype positionAt(QPointF point);
  [[nodiscard]] std::optional<std::string> linkAt(QPointF point);
  /// Where a range of the text stands.
  [[nodiscard]] std::vector<QRectF> rectsOf(qsizetype from, qsizetype to);
  /// Moves what is too wide at a point to the left; false when nothing there is.
  bool moveSideways(QPointF point, qreal by);
  /// Moves what is too wide so that a range of the text shows.
  void reveal(qsizetype from, qsizetype to);

  /// Draws what is between two heights, the upper one at the painter's origin.
  void draw(QPainter& painter, qreal top, qreal bottom, std::vector<Highlight> const& highlights);

 private:
  struct Measure {
    qreal top = 0;
    qreal height = 0;
    BlockLayout::End end;
    [[nodiscard]] qreal bottom() const { return top + height; }
  };
  /// How far a block that is too wide is moved to the left, and how far it can be.
  struct Sideways {
    qreal moved = 0;
    qreal overflow = 0;
  };

  /// What of a frame is around one of its slices.
  struct FramePart {
    DrawnBlock::Frame const& frame;
    qreal top = 0;
    qreal bottom = 0;
    bool begins = false;
    bool ends = false;
  };

  [[nodiscard]] DrawnBlock const& blockOf(std::size_t slice) const {
    return blocks_[slices_[slice].block];
  }
  /// Of a slice and the frames that end with it.
  [[nodiscard]] qreal lowerEdge(std::size_t slice) const;
  [[nodiscard]] std::size_t sliceAtHeight(qreal y) const;
  [[nodiscard]] std::size_t sliceAtPosition(qsizetype position) const;
  /// The slice as it is laid out, with what the one before left to it.
  [[nodiscard]] BlockSlice shownSlice(std::size_t slice) const;
  [[nodiscard]] Sideways sidewaysOf(std::size_t slice) const;
  [[nodiscard]] QPointF inSlice(std::size_t slice, QPointF point) const;
  BlockLayout const& layout(std::size_t slice);
  std::vector<qreal> const& columnWidthsOf(std::size_t block);
  void measureNext();
  void measure(std::size_t slice);
  /// False when nothing of the block had to be.
  bool measureAgain(std::size_t block, ImageCondition const& hasChanged);
  /// Below the one before.
  void place(std::size_t slice);
  void moveSideways(std::size_t slice, qreal by);
  void forgetMeasures();
  void forgetFarFrom(qreal top, qreal bottom);
  void drawFrames(QPainter& painter, std::size_t slice) const;
  void drawFrame(QPainter& painter, FramePart const& part) const;
  void drawSlider(QPainter& painter, Sideways const& sideways, qreal bottom) const;

  std::vector<DrawnBlock> blocks_;
  std::vector<BlockSlice> slices_;
  /// Of each block.
  std::vector<std::size_t> firstSlices_;
  /// The blocks with images.
  std::vector<std::size_t> pictured_;
  QString text_;
  qreal width_ = 0;
  MarkdownColors colors_;
  ImageProvider images_;
  /// Of the slices from the first on.
  std::vector<Measure> measures_;
  /// Of those near what is seen.
  std::map<std::size_t, BlockLayout> layouts_;
  qreal seenBottom_ = 0;
  std::size_t layoutCount_ = 0;
  /// By block.
  std::map<std::size_t, std::vector<qreal>> columnWidths_;
  std::map<std::size_t, Sideways> sideways_;
};

}  // namespace vek
