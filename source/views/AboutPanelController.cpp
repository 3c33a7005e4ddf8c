// SPDX-License-Identifier: MIT
#include "views/AboutPanelController.hpp"

#include "platform/Bundle.hpp"
#include "views/LicenceNotes.hpp"
#include "views/Views.hpp"
#include "views/WindowOrder.hpp"

namespace vek {

void AboutPanelController::orderFront() {
  if (!panel_) {
    panel_ =
        makeWindow(engine_, QStringLiteral("AboutPanel"),
                   {{QStringLiteral("version"), QString::fromStdString(Bundle::main().version)},
                    {QStringLiteral("licences"), licenceNotes()}});
  }
  vek::orderFront(*panel_);
}

}  // namespace vek
