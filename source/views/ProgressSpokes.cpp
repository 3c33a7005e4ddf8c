// SPDX-License-Identifier: MIT
#include "views/ProgressSpokes.hpp"

#include <QPainter>

namespace vek {

namespace {

constexpr int spokeCount = 8;
/// Of the strongest spoke and of the weakest.
constexpr float strong = 1;
constexpr float weak = 0.2F;

}  // namespace

ProgressSpokes::ProgressSpokes(QQuickItem* parent) : QQuickPaintedItem(parent) {
  connect(this, &ProgressSpokes::changed, this, [this] { update(); });
}

int ProgressSpokes::count() const {
  return spokeCount;
}

void ProgressSpokes::paint(QPainter* painter) {
  auto const size = width();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->translate(size / 2, size / 2);
  QRectF const spoke(-size / 16, -size / 2, size / 8, size * 0.3);
  for (int i = 0; i < spokeCount; ++i) {
    auto const age = static_cast<float>((step_ % spokeCount - i + spokeCount) % spokeCount);
    auto color = color_;
    color.setAlphaF(strong - (strong - weak) * age / (spokeCount - 1));
    painter->setBrush(color);
    painter->drawRoundedRect(spoke, spoke.width() / 2, spoke.width() / 2);
    painter->rotate(360.0 / spokeCount);
  }
}

}  // namespace vek
