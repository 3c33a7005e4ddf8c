// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWindow;

namespace vek {

/// Shows a window before all others of the program.
void orderFront(QWindow& window);

/// Brings the window that was ordered front last before those of other programs.
void activateFrontWindow();

/// What a desktop gives for a click: shown to it, a window may come forward. Either may be empty.
struct Activation {
  /// For Wayland.
  QString token;
  /// For X11.
  QString startupID;
};

/// Keeps it for the next time that a window is brought forward.
void keepActivation(Activation activation);

/// Takes what the desktop gave this process out of its environment, where the programs that it
/// starts would find it. Called while there are no other threads.
void keepActivationOfThisProcess();

}  // namespace vek
