// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QQuickPaintedItem>

namespace vek {

/// A rounded ground with an outline whose colour runs from top to bottom, and a soft shadow in the
/// margin around it. Painted, since effects draw nothing without a graphics card.
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

 public:
  explicit GroupFrame(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

  Q_SIGNAL void changed();

 private:
  void paintShadow(QPainter& painter, QRectF const& ground) const;

  QColor fill_;
  QColor outlineTop_;
  QColor outlineBottom_;
  QColor shadow_;
  qreal radius_ = 0;
  qreal margin_ = 0;
};

}  // namespace vek
