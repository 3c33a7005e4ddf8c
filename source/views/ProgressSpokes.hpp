// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QQuickPaintedItem>

namespace vek {

/// Spokes around a centre, of which the one that `step` counts is the strongest.
class ProgressSpokes : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
  Q_PROPERTY(int step MEMBER step_ NOTIFY changed)
  Q_PROPERTY(int count READ count CONSTANT)

 public:
  explicit ProgressSpokes(QQuickItem* parent = nullptr);

  [[nodiscard]] int count() const;

  void paint(QPainter* painter) override;

  Q_SIGNAL void changed();

 private:
  QColor color_;
  int step_ = 0;
};

}  // namespace vek
