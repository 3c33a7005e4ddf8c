// SPDX-License-Identifier: MIT
#pragma once

class QWindow;

namespace vek {

/// Shows a window before all others of the program.
void orderFront(QWindow& window);

/// Brings the window that was ordered front last before those of other programs.
void activateFrontWindow();

}  // namespace vek
