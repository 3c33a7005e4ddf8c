// SPDX-License-Identifier: MIT
#include "views/PaneHostingController.hpp"

#include <utility>

namespace vek {

PaneHostingController::PaneHostingController(Pane pane) : pane_(std::move(pane)) {}

QUrl PaneHostingController::view() const {
  return {QStringLiteral("qrc:/qt/qml/VEK/%1.qml").arg(pane_.content)};
}

}  // namespace vek
