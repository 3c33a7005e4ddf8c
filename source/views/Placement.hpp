// SPDX-License-Identifier: MIT
#pragma once

#include <QWindow>

namespace vek {

/// Puts a window into the middle of its screen.
void centre(QWindow& window);

}  // namespace vek
