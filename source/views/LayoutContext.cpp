// SPDX-License-Identifier: MIT
#include "views/LayoutContext.hpp"

namespace vek {

QSizeF ShownImage::sizeWithin(qreal room) const {
  if (image.isNull()) return {0, 0};
  auto const size = QSizeF(image.size()) / image.devicePixelRatio();
  return size.width() > room ? size * (room / size.width()) : size;
}

}  // namespace vek
