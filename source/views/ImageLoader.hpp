// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCache>
#include <QHash>
#include <QImage>
#include <QObject>
#include <QQueue>
#include <QUrl>

#include <chrono>

#include "platform/HTTPClient.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// Fetches the images of texts over HTTPS, and keeps those last used in memory. What is too large,
/// too slow or no picture does not come. URLs have no fragment. Main thread.
class ImageLoader : public QObject {
  Q_OBJECT

 public:
  using Clock = std::chrono::steady_clock;

  /// What did not come is not asked for again within `retryDelay`.
  explicit ImageLoader(HTTPClient client, Clock::duration retryDelay = std::chrono::minutes(1));

  /// The one of this process, never released.
  static ImageLoader& shared();

  /// The image, where it is there; else it is fetched, and `finished` tells when it has come, or
  /// with a null image that it will not. No other scheme than HTTPS makes a request.
  [[nodiscard]] QImage image(QUrl const& url);

  Q_SIGNAL void finished(QUrl const& url, QImage const& image);
  /// The turn of one that had to wait has come: who still wants it says so.
  Q_SIGNAL void turnCame(QUrl const& url, bool& isWanted);

 private:
  void start(QUrl const& url);
  void startNext();
  Task<> fetch(QUrl url);

  HTTPClient client_;
  Clock::duration retryDelay_;
  QCache<QUrl, QImage> images_;
  /// Until when those that are on their way, or did not come, are not asked for.
  QHash<QUrl, Clock::time_point> leftAloneUntil_;
  int fetching_ = 0;
  QQueue<QUrl> waiting_;
};

/// A picture of a format that browsers show; null for what is none or has too many pixels.
[[nodiscard]] QImage decodedImage(QByteArray const& bytes);

}  // namespace vek
