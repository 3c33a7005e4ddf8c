// SPDX-License-Identifier: MIT
#pragma once

class QString;
class QWindow;

namespace vek {

/// Shows a window before all others of the program.
void orderFront(QWindow& window);

/// Brings the window that was ordered front last before those of other programs.
void activateFrontWindow();

/// Keeps what a Wayland desktop has to be shown for the next window to come forward; nothing for an
/// empty token.
void keepActivationToken(QString const& token);

}  // namespace vek
