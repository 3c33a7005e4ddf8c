// SPDX-License-Identifier: MIT
#include "views/Mark.hpp"

#include <QLinearGradient>
#include <QPainter>

namespace vek {

namespace {

constexpr double side = 70;
constexpr double corner = 16;
constexpr QColor top(0x7a, 0x77, 0xfb);
constexpr QColor bottom(0x43, 0x38, 0xca);
constexpr QSizeF bar(6, 20);
constexpr double firstBar = 12;
constexpr double barDistance = 10;
constexpr double barTops[] = {16, 25, 34, 25, 16};

}  // namespace

Mark::Mark(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setImplicitSize(side, side);
}

void Mark::paint(QPainter* painter) {
  painter->setRenderHint(QPainter::Antialiasing);
  painter->scale(width() / side, height() / side);
  painter->setPen(Qt::NoPen);
  QLinearGradient ground(0, 0, 0, side);
  ground.setColorAt(0, top);
  ground.setColorAt(1, bottom);
  painter->setBrush(ground);
  painter->drawRoundedRect(QRectF(0, 0, side, side), corner, corner);
  painter->setBrush(Qt::white);
  double x = firstBar;
  for (auto const y : barTops) {
    painter->drawRoundedRect(QRectF({x, y}, bar), bar.width() / 2, bar.width() / 2);
    x += barDistance;
  }
}

}  // namespace vek
