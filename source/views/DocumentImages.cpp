// SPDX-License-Identifier: MIT
#include "views/DocumentImages.hpp"

#include "views/ImageLoader.hpp"

namespace vek {

namespace {

constexpr qsizetype mostBytes = qsizetype{128} << 20;

}  // namespace

DocumentImages::DocumentImages(ImageLoader& loader) : loader_(loader) {
  connect(&loader, &ImageLoader::finished, this, [this](QUrl const& url, QImage const& image) {
    bool const isNew = asked_.remove(url) && !image.isNull();
    if (isNew && !hold(url, image).isNull()) Q_EMIT changed(url);
  });
  connect(&loader, &ImageLoader::turnCame, this, [this](QUrl const& url, bool& isWanted) {
    if (asked_.contains(url)) isWanted = true;
  });
}

QImage DocumentImages::image(QUrl const& url) {
  auto const key = url.adjusted(QUrl::RemoveFragment);
  auto const held = held_.constFind(key);
  if (held != held_.cend()) return *held;
  auto const image = loader_.image(key);
  if (!image.isNull()) return hold(key, image);
  asked_.insert(key);
  return {};
}

void DocumentImages::clear() {
  asked_.clear();
  held_.clear();
  heldBytes_ = 0;
}

QImage DocumentImages::hold(QUrl const& url, QImage const& image) {
  bool const fits = heldBytes_ + image.sizeInBytes() <= mostBytes;
  if (fits) heldBytes_ += image.sizeInBytes();
  return *held_.insert(url, fits ? image : QImage());
}

}  // namespace vek
