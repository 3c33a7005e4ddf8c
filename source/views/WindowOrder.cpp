// SPDX-License-Identifier: MIT
#include "views/WindowOrder.hpp"

#include <QPointer>
#include <QWindow>

namespace vek {

namespace {

QPointer<QWindow>& frontWindow() {
  static QPointer<QWindow> instance;
  return instance;
}

}  // namespace

void orderFront(QWindow& window) {
  frontWindow() = &window;
  window.showNormal();
  window.raise();
}

void activateFrontWindow() {
  if (frontWindow()) frontWindow()->requestActivate();
}

}  // namespace vek
