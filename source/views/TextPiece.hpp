// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QPainter>
#include <QRectF>
#include <QString>
#include <QTextLayout>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "markdown/Drawable.hpp"
#include "markdown/InlineText.hpp"
#include "views/LayoutContext.hpp"

namespace vek {

/// A text as the document has it, with one character for each break.
[[nodiscard]] QString documentText(std::string_view text);

[[nodiscard]] QString textOf(InlineRun const& run);
/// That of runs, with one character for an image without a text.
[[nodiscard]] QString textOf(std::vector<InlineRun> const& runs);

/// A range of the document's text that is marked.
struct Highlight {
  qsizetype from = 0;
  qsizetype to = 0;
  QColor color;
  /// Of the letters, which might not be read on that ground in theirs.
  QColor text;
};

/// Lines of text that are laid out together: a paragraph, or a cell of a table.
class TextPiece {
 public:
  enum class Wrapping { never, anywhere, betweenWords };

  /// No image in the lines gets wider than `room`.
  TextPiece(std::vector<InlineRun> const& runs, Drawable const& drawable,
            LayoutContext const& context, qreal room, qsizetype start);

  [[nodiscard]] bool isRightToLeft() const { return layout_->text().isRightToLeft(); }

  /// Breaks the text into lines of this width. Without wrapping it keeps those that it has.
  void layOut(qreal width, Wrapping wrapping, Qt::Alignment alignment = Qt::AlignLeft,
              Qt::LayoutDirection direction = Qt::LayoutDirectionAuto);
  /// Leaves the last of several lines to the piece where the text goes on.
  void leaveLastLine();

  /// The widths that the text would take without a break, and with all of them. Once laid out.
  [[nodiscard]] qreal naturalWidth() const { return layout_->maximumWidth(); }
  [[nodiscard]] qreal leastWidth() const { return layout_->minimumWidth(); }
  [[nodiscard]] qreal height() const { return height_; }
  [[nodiscard]] qreal firstBaseline() const;
  [[nodiscard]] QRectF rect() const { return {place, QSizeF(width_, height_)}; }

  /// Where in the text of the document it begins, and how long it is.
  [[nodiscard]] qsizetype start() const { return start_; }
  [[nodiscard]] qsizetype length() const { return length_; }

  /// The position in the document's text that is nearest to a point in the block.
  [[nodiscard]] qsizetype positionAt(QPointF point) const;
  [[nodiscard]] std::optional<std::string> linkAt(QPointF point) const;
  /// The rectangles of a range of the document's text, one a line.
  [[nodiscard]] std::vector<QRectF> rectsOf(qsizetype from, qsizetype to) const;

  /// Draws the lines in a part of what `place` is counted in. Highlights are given in positions of
  /// the document's text.
  void draw(QPainter& painter, std::vector<Highlight> const& highlights,
            QRectF const& visible) const;

  QPointF place;

 private:
  struct Range {
    int start = 0;
    int length = 0;
  };
  struct Link {
    Range range;
    SharedText destination;
  };
  struct Ground {
    Range range;
    QColor color;
  };

  /// An image in a line, with the characters that keep its place there.
  struct Picture {
    Range range;
    QImage image;
    QSizeF size;
    std::optional<SharedText> destination;
    QRectF rect = {};
  };

  /// How far the pictures of a line stand out above its letters.
  [[nodiscard]] qreal reachAbove(QTextLine const& line) const;

  std::unique_ptr<QTextLayout> layout_;
  std::vector<Link> links_;
  std::vector<Ground> grounds_;
  std::vector<Picture> pictures_;
  qsizetype start_;
  qsizetype length_ = 0;
  int lineCount_ = 0;
  qreal lineSpacing_;
  qreal width_ = 0;
  qreal height_ = 0;
};

}  // namespace vek
