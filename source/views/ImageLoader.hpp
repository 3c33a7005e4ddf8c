// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCache>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QUrl>

#include "platform/HTTPClient.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// Fetches the images of texts over HTTPS, each once, and keeps those last used in memory. What is
/// too large, too slow or no picture does not come. Main thread.
class ImageLoader : public QObject {
  Q_OBJECT

 public:
  explicit ImageLoader(HTTPClient client);

  /// The one of this process, never released.
  static ImageLoader& shared();

  /// The image, where it is there; else it is fetched, and `finished` tells when it has come or
  /// will not. No other scheme than HTTPS makes a request.
  [[nodiscard]] QImage image(QUrl const& url);

  Q_SIGNAL void finished(QUrl const& url);

 private:
  Task<> fetch(QUrl url);

  HTTPClient client_;
  QCache<QUrl, QImage> images_;
  /// Those that come or did not come: none is asked for twice.
  QSet<QUrl> asked_;
};

/// A picture of a format that browsers show; null for what is none or has too many pixels.
[[nodiscard]] QImage decodedImage(QByteArray const& bytes);

}  // namespace vek
