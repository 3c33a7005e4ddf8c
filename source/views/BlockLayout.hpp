// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "markdown/DrawnBlock.hpp"
#include "views/BlockSlice.hpp"
#include "views/LayoutContext.hpp"
#include "views/TableBounds.hpp"
#include "views/TextPiece.hpp"

namespace vek {

/// A slice of a block that was measured for a width, its coordinates counted from its upper left
/// corner. What is wider than its room can be moved sideways.
class BlockLayout {
 public:
  /// Where the next slice of the block begins.
  struct End {
    BlockPlace place;
    qsizetype position = 0;

    bool operator==(End const&) const = default;
  };

  /// `columnWidths` are those of a table.
  BlockLayout(DrawnBlock const& block, BlockSlice const& slice, qreal width,
              std::vector<qreal> const& columnWidths, LayoutContext const& context);

  [[nodiscard]] qreal height() const { return height_; }
  /// The last line of a slice is left to the next one, which may have more to put in it.
  [[nodiscard]] End const& end() const { return end_; }
  /// The rectangles of a range of the document's text, one a line and one an image.
  [[nodiscard]] std::vector<QRectF> rectsOf(qsizetype from, qsizetype to) const;
  /// How far it can be moved to the left.
  [[nodiscard]] qreal overflow() const { return overflow_; }

  [[nodiscard]] qsizetype positionAt(QPointF point) const;
  [[nodiscard]] std::optional<std::string> linkAt(QPointF point) const;

  /// Draws what is in a part of the block. `sideways` is how far the content is moved to the left.
  void draw(QPainter& painter, MarkdownColors const& colors,
            std::vector<Highlight> const& highlights, QRectF const& visible, qreal sideways) const;

 private:
  struct Picture {
    QRectF rect;
    QImage image;
    std::optional<SharedText> destination;
    /// Where its text begins, and where it ends with the break behind it.
    qsizetype start = 0;
    qsizetype end = 0;
  };
  struct Symbol {
    QRectF rect;
    QColor color;
    bool isFilled = false;
  };

  // Each says how high the content is.
  qreal layOutText(DrawnBlock::Text const& text, LayoutContext const& context);
  qreal layOutGrid(DrawnBlock::Grid const& grid, std::vector<qreal> const& columnWidths,
                   LayoutContext const& context);
  qreal layOutImages(ImageFlow const& flow, LayoutContext const& context);
  void addMarkers(LayoutContext const& context);
  [[nodiscard]] QRectF framed(QRectF const& rect) const;
  void drawGround(QPainter& painter, MarkdownColors const& colors) const;
  void drawTable(QPainter& painter, MarkdownColors const& colors, QRectF const& visible) const;
  void drawCells(QPainter& painter, MarkdownColors const& colors, QRectF const& visible) const;
  static void drawSymbol(QPainter& painter, Symbol const& symbol, QColor check);

  DrawnBlock const& block_;
  BlockSlice slice_;
  End end_;
  /// What the block takes, and what its padding leaves to the content.
  QRectF room_;
  QRectF inner_;
  qreal height_ = 0;
  qreal overflow_ = 0;
  std::vector<TextPiece> pieces_;
  std::vector<TextPiece> markers_;
  std::vector<Symbol> symbols_;
  std::vector<Picture> pictures_;
  TableBounds table_;
};

/// A ground with round corners, the line around it, and a bar at its leading side.
struct BoxColors {
  std::optional<ThemeColor> background, border, leadingBar;
};
void drawBox(QPainter& painter, QRectF const& rect, BoxColors const& box,
             MarkdownColors const& colors);

/// From the edge of a box to its bar.
constexpr qreal barInset = 8;
constexpr qreal barWidth = 3;

/// How wide the content of a block may be in a document of this width.
[[nodiscard]] qreal roomOf(DrawnBlock const& block, qreal width);

using ImageCondition = std::function<bool(RawImageData const&)>;

/// Whether a slice of a block has an image of which something is true, those in its lines included.
[[nodiscard]] bool hasImage(DrawnBlock const& block, BlockSlice const& slice,
                            ImageCondition const& isTrue);

}  // namespace vek
