// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>
#include <QWindow>

#include <string>
#include <string_view>

#include "platform/UserDefaults.hpp"

namespace vek {

/// Remembers where the user left a window, under the default "NSWindow Frame " and a name. Where
/// programs cannot place their windows it does nothing.
class FrameAutosave : public QObject {
 public:
  /// Saves from now on, a moment after each move and when the window is hidden. Window and defaults
  /// outlive this object.
  FrameAutosave(QWindow& window, std::string_view name, UserDefaults& defaults);

  /// Puts the window where it was saved, or as near to it as the screens of today allow. False when
  /// no frame was ever saved.
  bool restore();

 private:
  void save();

  QWindow& window_;
  std::string key_;
  UserDefaults& defaults_;
  QTimer saving_;
};

}  // namespace vek
