// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QRect>
#include <QWindow>

namespace vek {

/// What QML cannot do by itself about windows and the room that the desktop leaves them.
class ScreenRoom : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  /// On the screen of a window, within the frame that the desktop draws around it.
  Q_INVOKABLE [[nodiscard]] QRect around(QWindow* window) const;
  /// All at once: by its parts, the last change would undo the one that is still under way.
  Q_INVOKABLE void setGeometry(QWindow* window, QRect const& geometry) const;
};

}  // namespace vek
