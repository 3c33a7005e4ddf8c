// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>

namespace vek {

/// A picture as it travels to the status area.
struct StatusItemPixmap {
  int width = 0;
  int height = 0;
  /// Alpha, red, green, blue of each pixel, a byte each.
  QByteArray pixels;
};

QDBusArgument& operator<<(QDBusArgument& argument, StatusItemPixmap const& pixmap);
QDBusArgument const& operator>>(QDBusArgument const& argument, StatusItemPixmap& pixmap);

/// The same picture in several sizes.
using StatusItemPixmaps = QList<StatusItemPixmap>;

/// A picture of one colour from an SVG file, in the sizes that status areas have.
[[nodiscard]] StatusItemPixmaps statusItemPixmaps(QString const& file);

}  // namespace vek

Q_DECLARE_METATYPE(vek::StatusItemPixmap)
