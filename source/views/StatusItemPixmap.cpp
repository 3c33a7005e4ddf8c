// SPDX-License-Identifier: MIT
#include "views/StatusItemPixmap.hpp"

#include <QImage>
#include <QPainter>
#include <QtEndian>

#include <array>

#include "views/SymbolPath.hpp"

namespace vek {

namespace {

/// Of the drawing.
constexpr double side = 22;
/// For screens at scale 1 and 2.
constexpr std::array<int, 4> sizes = {22, 24, 44, 48};
/// Of the product's mark. It stands out on a light panel as on a dark one, and which of them there
/// is nobody tells.
constexpr QColor colour(0x6d, 0x6a, 0xf5);

QImage drawn(QPainterPath const& symbol, int size) {
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size / side, size / side);
  painter.fillPath(symbol, colour);
  painter.end();
  return image.convertToFormat(QImage::Format_ARGB32);
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, StatusItemPixmap const& pixmap) {
  argument.beginStructure();
  argument << pixmap.width << pixmap.height << pixmap.pixels;
  argument.endStructure();
  return argument;
}

QDBusArgument const& operator>>(QDBusArgument const& argument, StatusItemPixmap& pixmap) {
  argument.beginStructure();
  argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
  argument.endStructure();
  return argument;  // NOLINT(bugprone-return-const-ref-from-parameter): what the toolkit asks for
}

StatusItemPixmaps statusItemPixmaps(QString const& file) {
  auto const symbol = symbolPath(file);
  StatusItemPixmaps pixmaps;
  for (int const size : sizes) {
    auto const image = drawn(symbol, size);
    QByteArray pixels(image.sizeInBytes(), Qt::Uninitialized);
    qToBigEndian<quint32>(image.constBits(), image.sizeInBytes() / qsizetype(sizeof(quint32)),
                          pixels.data());
    pixmaps.append({image.width(), image.height(), pixels});
  }
  return pixmaps;
}

}  // namespace vek
