// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <functional>

#include "markdown/RawImageData.hpp"
#include "views/MarkdownColors.hpp"

namespace vek {

/// What there is to see of an image now.
struct ShownImage {
  /// False where the image is not for this colour scheme: then it takes no room.
  bool isShown = true;
  QImage image = {};

  [[nodiscard]] bool isLoaded() const { return isShown && !image.isNull(); }
  /// In points, made smaller where there is less room.
  [[nodiscard]] QSizeF sizeWithin(qreal room) const;
};
using ImageProvider = std::function<ShownImage(RawImageData const& image)>;

/// What blocks are laid out with.
struct LayoutContext {
  MarkdownColors const& colors;
  ImageProvider const& images;

  [[nodiscard]] ShownImage shown(RawImageData const& image) const {
    return images ? images(image) : ShownImage{};
  }
};

}  // namespace vek
