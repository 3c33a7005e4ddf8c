// SPDX-License-Identifier: MIT
#include "views/SymbolShape.hpp"

#include <QPainter>

#include "views/SymbolPath.hpp"

namespace vek {

namespace {
constexpr double side = 16;
}

SymbolShape::SymbolShape(QQuickItem* parent) : QQuickPaintedItem(parent) {
  connect(this, &SymbolShape::changed, this, [this] { update(); });
}

void SymbolShape::setSymbol(QString const& symbol) {
  if (symbol == symbol_) return;
  symbol_ = symbol;
  path_ = symbolPath(QStringLiteral(":/qt/qml/VEK/icons/%1.svg").arg(symbol));
  Q_EMIT changed();
}

void SymbolShape::paint(QPainter* painter) {
  painter->setRenderHint(QPainter::Antialiasing);
  painter->scale(width() / side, height() / side);
  painter->fillPath(path_, color_);
}

}  // namespace vek
