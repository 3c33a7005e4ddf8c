// SPDX-License-Identifier: MIT
#include "views/ImageLoader.hpp"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <utility>

#include "runtime/MainQueue.hpp"
#include "runtime/Result.hpp"
#include "runtime/TaskHandle.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {

namespace {

constexpr std::size_t largestBody = std::size_t{8} << 20U;
constexpr std::chrono::seconds longestWait(20);
constexpr qint64 mostPixels = 16'000'000;
/// No window is wider, and none shows more at once; larger pictures are made smaller.
constexpr QSize largest(2000, 4000);
constexpr double mostPixelsShown = 4'000'000;
/// Room for several of the largest.
constexpr qsizetype cacheKilobytes = 64 << 10;
constexpr int success = 200;
/// Of all documents together.
constexpr int mostAtOnce = 6;

QSize shownSize(QSize size) {
  auto const within = size.scaled(size.boundedTo(largest), Qt::KeepAspectRatio);
  auto const pixels = double(within.width()) * within.height();
  auto const shown =
      pixels > mostPixelsShown ? within * std::sqrt(mostPixelsShown / pixels) : within;
  return shown.expandedTo({1, 1});
}

Task<QImage> decode(std::string bytes) {
  co_return decodedImage(QByteArray::fromStdString(bytes));
}

}  // namespace

QImage decodedImage(QByteArray const& bytes) {
  static constexpr std::array formats = {"png", "jpeg", "gif", "webp"};
  auto const isShown = [](QByteArray const& format) {
    return std::ranges::any_of(formats, [&](char const* known) { return format == known; });
  };
  QBuffer buffer;
  buffer.setData(bytes);
  QImageReader reader(&buffer);
  reader.setDecideFormatFromContent(true);
  if (!isShown(reader.format())) return {};
  auto const size = reader.size();
  if (!size.isValid() || qint64{size.width()} * size.height() > mostPixels) return {};
  reader.setAutoTransform(true);
  auto image = reader.read();
  auto const shown = shownSize(image.size());
  bool const fits = image.isNull() || shown == image.size();
  return fits ? image : image.scaled(shown, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

ImageLoader::ImageLoader(HTTPClient client, Clock::duration retryDelay)
    : client_(std::move(client)), retryDelay_(retryDelay), images_(cacheKilobytes) {}

ImageLoader& ImageLoader::shared() {
  static auto& loader = *new ImageLoader(HTTPClient::shared());
  return loader;
}

QImage ImageLoader::image(QUrl const& url) {
  if (auto const* image = images_.object(url)) return *image;
  bool const isLeftAlone = Clock::now() < leftAloneUntil_.value(url);
  if (url.scheme() == u"https" && !isLeftAlone) {
    leftAloneUntil_.insert(url, Clock::time_point::max());
    if (fetching_ < mostAtOnce) {
      start(url);
    } else {
      waiting_.enqueue(url);
    }
  }
  return {};
}

void ImageLoader::start(QUrl const& url) {
  ++fetching_;
  spawn(MainQueue::shared(), fetch(url));
}

void ImageLoader::startNext() {
  while (fetching_ < mostAtOnce && !waiting_.isEmpty()) {
    auto const url = waiting_.dequeue();
    bool isWanted = false;
    Q_EMIT turnCame(url, isWanted);
    if (isWanted) {
      start(url);
    } else {
      leftAloneUntil_.remove(url);
    }
  }
}

Task<> ImageLoader::fetch(QUrl url) {
  auto response =
      co_await attempt(client_.send({.url = url.toString(QUrl::FullyEncoded).toStdString(),
                                     .timeout = longestWait,
                                     .largestBody = largestBody}));
  QImage image;
  if (response && response.value().status == success) {
    image = co_await on(ThreadPool::shared(), decode(std::move(response.value().body)));
  }
  if (image.isNull()) {
    leftAloneUntil_.insert(url, Clock::now() + retryDelay_);
  } else {
    images_.insert(url, new QImage(image), std::max<qsizetype>(1, image.sizeInBytes() >> 10));
    // It may be pushed out by others, and then be asked for again.
    leftAloneUntil_.remove(url);
  }
  Q_EMIT finished(url, image);
  --fetching_;
  startNext();
}

}  // namespace vek
