// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>

#include <optional>
#include <string>
#include <vector>

#include "markdown/DrawnBlock.hpp"
#include "views/LayoutContext.hpp"
#include "views/TableBounds.hpp"
#include "views/TextPiece.hpp"

namespace vek {

/// A block that was measured for a width, its coordinates counted from its upper left corner. What
/// is wider than its room can be moved sideways.
class BlockLayout {
 public:
  /// `start` is where the text of the block begins in that of the document.
  BlockLayout(DrawnBlock const& block, qreal width, LayoutContext const& context, qsizetype start);

  [[nodiscard]] qreal height() const { return height_; }
  [[nodiscard]] std::vector<TextPiece> const& pieces() const { return pieces_; }
  [[nodiscard]] TableBounds const& table() const { return table_; }
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
  };
  struct Symbol {
    QRectF rect;
    QColor color;
    bool isFilled = false;
  };

  // Each says how high the content is.
  qreal layOutText(DrawnBlock::Text const& text, LayoutContext const& context, qsizetype start);
  qreal layOutGrid(DrawnBlock::Grid const& grid, LayoutContext const& context, qsizetype start);
  qreal layOutImages(ImageFlow const& flow, LayoutContext const& context, qsizetype start);
  void addMarkers(LayoutContext const& context);
  void drawGround(QPainter& painter, MarkdownColors const& colors) const;
  void drawTable(QPainter& painter, MarkdownColors const& colors, QRectF const& visible) const;
  void drawCells(QPainter& painter, MarkdownColors const& colors, QRectF const& visible) const;
  static void drawSymbol(QPainter& painter, Symbol const& symbol, QColor check);

  DrawnBlock const& block_;
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

/// The text of a block as the document counts it.
[[nodiscard]] QString textOf(DrawnBlock const& block);

/// Whether there are images in it, in its lines included.
[[nodiscard]] bool hasImages(DrawnBlock const& block);

}  // namespace vek
