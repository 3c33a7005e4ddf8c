// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QFont>
#include <QQuickPaintedItem>
#include <QTextLayout>

#include <deque>
#include <memory>
#include <optional>

namespace vek {

/// Plain text that grows at its end, seen from its end, with an upper edge that fades out. It lays
/// out only what shows, so that hours of text cost what a few lines do.
class FadingText : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
  Q_PROPERTY(int pixelSize READ pixelSize WRITE setPixelSize NOTIFY pixelSizeChanged)
  /// How far the end of the text is below the lower edge; stays between the end and the beginning.
  Q_PROPERTY(qreal scroll READ scroll WRITE setScroll NOTIFY scrollChanged)
  Q_PROPERTY(qreal lineHeight READ lineHeight NOTIFY pixelSizeChanged)

 public:
  explicit FadingText(QQuickItem* parent = nullptr);

  [[nodiscard]] QString text() const { return text_; }
  [[nodiscard]] QColor color() const { return color_; }
  [[nodiscard]] int pixelSize() const { return font_.pixelSize(); }
  [[nodiscard]] qreal scroll() const { return scroll_; }
  [[nodiscard]] qreal lineHeight() const;
  /// The blocks that are laid out now.
  [[nodiscard]] std::size_t laidOutBlocks() const { return blocks_.size(); }

  void setText(QString text);
  void setColor(QColor color);
  void setPixelSize(int size);
  void setScroll(qreal scroll);

  void paint(QPainter* painter) override;

  Q_SIGNAL void textChanged();
  Q_SIGNAL void colorChanged();
  Q_SIGNAL void pixelSizeChanged();
  Q_SIGNAL void scrollChanged();
  /// New lines came at the end. What was in view still is: `scroll` is to go back to 0.
  Q_SIGNAL void grew();

 protected:
  void geometryChange(QRectF const& now, QRectF const& before) override;

 private:
  /// A paragraph, or a part of one that is very long.
  struct Block {
    qsizetype start = 0;
    std::unique_ptr<QTextLayout> layout;
    qreal height = 0;
  };

  void forgetLayout();
  void layOut(qreal height);
  [[nodiscard]] Block makeBlock(qsizetype start, qsizetype end) const;
  [[nodiscard]] qsizetype startOfBlock(qsizetype end) const;
  /// The height of the text behind `start`; nothing when not all of it is laid out.
  [[nodiscard]] std::optional<qreal> heightFrom(qsizetype start) const;

  QString text_;
  QColor color_;
  QFont font_;
  qreal scroll_ = 0;
  /// The last ones of the text, in order.
  std::deque<Block> blocks_;
  qreal blocksHeight_ = 0;
};

}  // namespace vek
