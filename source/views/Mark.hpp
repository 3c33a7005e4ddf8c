// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QQuickPaintedItem>

namespace vek {

/// The image "vek", the product's mark. It is drawn: to read it from a file would hold up a start.
class Mark : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT

 public:
  explicit Mark(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;
};

}  // namespace vek
