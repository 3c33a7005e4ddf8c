// SPDX-License-Identifier: MIT
#include "views/WindowOrder.hpp"

#include <QPointer>
#include <QString>
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

void keepActivationToken(QString const& token) {
  if (!token.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

}  // namespace vek
