// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QUrl>

namespace vek {

class ImageLoader;

/// The images that a document shows. It holds them as long as it is shown, whatever others load, up
/// to a bound; what is beyond it stays without its picture.
class DocumentImages : public QObject {
  Q_OBJECT

 public:
  explicit DocumentImages(ImageLoader& loader);

  /// The image, where it is there; else `changed` tells when it has come, by its URL without a
  /// fragment.
  [[nodiscard]] QImage image(QUrl const& url);
  /// Another document is shown.
  void clear();

  Q_SIGNAL void changed(QUrl const& url);

 private:
  QImage hold(QUrl const& url, QImage const& image);

  ImageLoader& loader_;
  QSet<QUrl> asked_;
  /// Null for those that are beyond the bound.
  QHash<QUrl, QImage> held_;
  qsizetype heldBytes_ = 0;
};

}  // namespace vek
