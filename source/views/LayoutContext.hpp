// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <functional>

#include "markdown/RawImageData.hpp"
#include "views/MarkdownColors.hpp"

namespace vek {

/// What there is to see of an image now.
struct ShownImage {
  QImage image = {};

  [[nodiscard]] bool isLoaded() const { return !image.isNull(); }
  /// In points, made smaller where there is less room.
  [[nodiscard]] QSizeF sizeWithin(qreal room) const;
};
/// Whether an image stands alone or among words.
enum class ImagePlace { block, inLine };
using ImageProvider = std::function<ShownImage(RawImageData const& image, ImagePlace place)>;

/// What blocks are laid out with.
struct LayoutContext {
  MarkdownColors const& colors;
  ImageProvider const& images;

  [[nodiscard]] ShownImage shown(RawImageData const& image, ImagePlace place) const {
    return images ? images(image, place) : ShownImage{};
  }
};

}  // namespace vek
