// SPDX-License-Identifier: MIT
#include "views/SymbolPath.hpp"

#include <gtest/gtest.h>

#include <QDir>
#include <QImageReader>
#include <QPainter>

#include <cstdlib>

namespace vek {
namespace {

constexpr int size = 64;

QImage read(QString const& file) {
  QImageReader reader(file);
  reader.setScaledSize({size, size});
  return reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage drawn(QString const& file) {
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  double const scale = double(size) / QImageReader(file).size().width();
  painter.scale(scale, scale);
  painter.fillPath(symbolPath(file), Qt::black);
  return image;
}

/// Of all pixels, those that are there in one and not in the other.
int differences(QImage const& one, QImage const& other) {
  int count = 0;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      count += std::abs(qAlpha(one.pixel(x, y)) - qAlpha(other.pixel(x, y))) > 128 ? 1 : 0;
    }
  }
  return count;
}

TEST(SymbolPath, DrawsAllSymbolsAsAReaderOfPicturesDoes) {
  QStringList files = {QStringLiteral(":/qt/qml/VEK/images/status-item.svg")};
  for (auto const& icon : QDir(QStringLiteral(":/qt/qml/VEK/icons")).entryInfoList()) {
    files << icon.filePath();
  }
  EXPECT_GT(files.size(), 10);
  for (auto const& file : files) {
    EXPECT_LE(differences(read(file), drawn(file)), 4) << file.toStdString();
  }
}

}  // namespace
}  // namespace vek
