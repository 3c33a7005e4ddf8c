// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QPainterPath>
#include <QQuickPaintedItem>
#include <QString>

namespace vek {

/// A symbol of the family in one colour. `symbol` is the name of a file in icons/.
class SymbolShape : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString symbol MEMBER symbol_ WRITE setSymbol NOTIFY changed)
  Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)

 public:
  explicit SymbolShape(QQuickItem* parent = nullptr);

  void setSymbol(QString const& symbol);

  void paint(QPainter* painter) override;

  Q_SIGNAL void changed();

 private:
  QString symbol_;
  QPainterPath path_;
  QColor color_;
};

}  // namespace vek
