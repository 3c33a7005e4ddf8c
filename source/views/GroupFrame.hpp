// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QQuickPaintedItem>

namespace vek {

/// A rounded ground with an outline whose colour runs from top to bottom, and a soft shadow in the
/// margin around it. Painted, since effects draw nothing without a graphics card. The item can be a
/// part of the frame, as high as what is seen of it, since all that an item covers takes memory.
class GroupFrame : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QColor fill MEMBER fill_ NOTIFY changed)
  Q_PROPERTY(QColor outlineTop MEMBER outlineTop_ NOTIFY changed)
  Q_PROPERTY(QColor outlineBottom MEMBER outlineBottom_ NOTIFY changed)
  Q_PROPERTY(QColor shadow MEMBER shadow_ NOTIFY changed)
  Q_PROPERTY(qreal radius MEMBER radius_ NOTIFY changed)
  /// Between the edge of the item and the ground on all sides: the room of the shadow.
  Q_PROPERTY(qreal margin MEMBER margin_ NOTIFY changed)
  /// How high the whole frame is, its margins included, and how much of it is above the item.
  Q_PROPERTY(qreal frameHeight MEMBER frameHeight_ NOTIFY frameHeightChanged)
  Q_PROPERTY(qreal above MEMBER above_ NOTIFY aboveChanged)

 public:
  explicit GroupFrame(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

  Q_SIGNAL void changed();
  Q_SIGNAL void frameHeightChanged();
  Q_SIGNAL void aboveChanged();

 private:
  void paintShadow(QPainter& painter, QRectF const& ground) const;

  QColor fill_;
  QColor outlineTop_;
  QColor outlineBottom_;
  QColor shadow_;
  qreal radius_ = 0;
  qreal margin_ = 0;
  qreal frameHeight_ = 0;
  qreal above_ = 0;
};

}  // namespace vek
