// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class QWindow;

namespace vek {

/// What an X11 desktop has begun with a click on the program: it waits for a window, and its
/// identifier holds the time of the click.
class StartupSequence {
 public:
  explicit StartupSequence(std::string identifier) : identifier_(std::move(identifier)) {}

  /// Brings a window before those that were used before the click, and ends the desktop's wait.
  /// False when that cannot be said here: on other desktops, or without a click.
  [[nodiscard]] bool activate(QWindow& window) const;

 private:
  std::string identifier_;
};

}  // namespace vek
