// SPDX-License-Identifier: MIT
#include "views/GroupFrame.hpp"

#include <QLinearGradient>
#include <QPainter>

namespace vek {

namespace {

constexpr qreal lineWidth = 1;
/// How far the shadow reaches beyond the ground, and how far it falls.
constexpr int shadowReach = 12;
constexpr qreal shadowFall = 4;

}  // namespace

GroupFrame::GroupFrame(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  for (auto const signal :
       {&GroupFrame::changed, &GroupFrame::frameHeightChanged, &GroupFrame::aboveChanged})
    connect(this, signal, this, [this] { update(); });
}

void GroupFrame::paint(QPainter* painter) {
  auto const ground =
      QRectF(0, -above_, width(), frameHeight_).adjusted(margin_, margin_, -margin_, -margin_);
  painter->setRenderHint(QPainter::Antialiasing);
  if (shadow_.alpha() > 0) paintShadow(*painter, ground);
  QLinearGradient outline(ground.topLeft(), ground.bottomLeft());
  outline.setColorAt(0, outlineTop_);
  outline.setColorAt(1, outlineBottom_);
  constexpr auto inset = lineWidth / 2;
  painter->setPen(QPen(outline, lineWidth));
  painter->setBrush(fill_);
  painter->drawRoundedRect(ground.adjusted(inset, inset, -inset, -inset), radius_, radius_);
}

void GroupFrame::paintShadow(QPainter& painter, QRectF const& ground) const {
  painter.setPen(Qt::NoPen);
  auto const fallen = ground.translated(0, shadowFall);
  // Layers that grow add up to the full shadow where the innermost one is. The weight of each falls
  // with its reach, so that the outer edge cannot be seen.
  constexpr float weights = shadowReach * (shadowReach + 1) / 2.0F;
  for (int reach = shadowReach; reach > 0; --reach) {
    auto layer = shadow_;
    layer.setAlphaF(shadow_.alphaF() * static_cast<float>(shadowReach + 1 - reach) / weights);
    painter.setBrush(layer);
    painter.drawRoundedRect(fallen.adjusted(-reach, -reach, reach, reach), radius_ + reach,
                            radius_ + reach);
  }
}

}  // namespace vek
