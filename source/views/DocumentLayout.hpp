// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "views/BlockLayout.hpp"

namespace vek {

/// The blocks of a document for one width. They are measured from the top on, as far as is asked
/// for; those far from what is seen give back what drawing them takes, and are laid out anew when
/// they come into view.
class DocumentLayout {
 public:
  using Clock = std::chrono::steady_clock;

  void setBlocks(std::vector<DrawnBlock> blocks);
  void setWidth(qreal width);
  void setColors(MarkdownColors const& colors);
  void setImages(ImageProvider images);
  /// An image came: blocks with images are measured again.
  void imagesChanged();

  [[nodiscard]] MarkdownColors const& colors() const { return colors_; }
  /// Of what is measured so far.
  [[nodiscard]] qreal height() const;
  [[nodiscard]] bool isComplete() const { return tops_.size() == blocks_.size(); }
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
  /// What of a frame is around one of its blocks.
  struct FramePart {
    DrawnBlock::Frame const& frame;
    qreal top = 0;
    qreal bottom = 0;
    bool begins = false;
    bool ends = false;
  };

  /// Of a block and the frames that end with it.
  [[nodiscard]] qreal lowerEdge(std::size_t block) const;
  [[nodiscard]] std::size_t blockAtHeight(qreal y) const;
  [[nodiscard]] std::size_t blockAtPosition(qsizetype position) const;
  [[nodiscard]] QPointF inBlock(std::size_t block, QPointF point) const;
  BlockLayout const& layout(std::size_t block);
  void measureNext();
  void forgetMeasures();
  void forgetFarFrom(qreal top, qreal bottom);
  void drawFrames(QPainter& painter, std::size_t block) const;
  void drawFrame(QPainter& painter, FramePart const& part) const;
  static void drawSlider(QPainter& painter, MarkdownColors const& colors, BlockLayout const& layout,
                         qreal width, qreal sideways);

  std::vector<DrawnBlock> blocks_;
  /// Where the text of each block begins in that of the document.
  std::vector<qsizetype> starts_;
  QString text_;
  qreal width_ = 0;
  MarkdownColors colors_;
  ImageProvider images_;
  /// Of the blocks that are measured.
  std::vector<qreal> tops_;
  std::vector<qreal> heights_;
  std::vector<std::unique_ptr<BlockLayout>> layouts_;
  std::vector<qreal> sideways_;
};

}  // namespace vek
