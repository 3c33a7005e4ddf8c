// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

class QWindow;

namespace vek {

enum class Taskbar : std::uint8_t { listed, leftOut };

/// Has the desktop list a window in its taskbar and pager, or not. Before each showing, as it is
/// forgotten with a window that goes off the screen. Does nothing on Wayland, which has no such
/// wish.
void setTaskbar(QWindow& window, Taskbar taskbar);

}  // namespace vek
