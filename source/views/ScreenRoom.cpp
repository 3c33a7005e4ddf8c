// SPDX-License-Identifier: MIT
#include "views/ScreenRoom.hpp"

#include <QScreen>

namespace vek {

// QML calls objects only. NOLINTBEGIN(readability-convert-member-functions-to-static)

QRect ScreenRoom::around(QWindow* window) const {
  auto const* screen = window->screen();
  return screen ? screen->availableGeometry().marginsRemoved(window->frameMargins()) : QRect();
}

void ScreenRoom::setGeometry(QWindow* window, QRect const& geometry) const {
  window->setGeometry(geometry);
}

// NOLINTEND(readability-convert-member-functions-to-static)

}  // namespace vek
