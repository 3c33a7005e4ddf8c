// SPDX-License-Identifier: MIT
#include "views/StatusItemPixmap.hpp"

#include <QImageReader>
#include <QPainter>
#include <QtEndian>

#include <array>

namespace vek {

namespace {

/// For screens at scale 1 and 2.
constexpr std::array<int, 4> sizes = {22, 24, 44, 48};
/// Of the product's mark. It stands out on a light panel as on a dark one, and which of them there
/// is nobody tells.
constexpr QColor colour(0x6d, 0x6a, 0xf5);

QImage drawn(QString const& file, int size) {
  QImageReader reader(file);
  reader.setScaledSize({size, size});
  auto image = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
  QPainter painter(&image);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), colour);
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
  StatusItemPixmaps pixmaps;
  for (int const size : sizes) {
    auto const image = drawn(file, size);
    QByteArray pixels(image.sizeInBytes(), Qt::Uninitialized);
    qToBigEndian<quint32>(image.constBits(), image.sizeInBytes() / qsizetype(sizeof(quint32)),
                          pixels.data());
    pixmaps.append({image.width(), image.height(), pixels});
  }
  return pixmaps;
}

}  // namespace vek
