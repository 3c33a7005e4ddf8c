// SPDX-License-Identifier: MIT
#include "views/Placement.hpp"

#include <QScreen>

namespace vek {

void centre(QWindow& window) {
  auto const* screen = window.screen();
  if (!screen) return;
  auto frame = QRect(QPoint(), window.size());
  frame.moveCenter(screen->availableGeometry().center());
  window.setPosition(frame.topLeft());
}

}  // namespace vek
