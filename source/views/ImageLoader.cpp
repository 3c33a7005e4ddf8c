// SPDX-License-Identifier: MIT
#include "views/ImageLoader.hpp"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <chrono>
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
/// No window is wider; larger pictures are made smaller.
constexpr int widest = 2000;
constexpr qsizetype cacheKilobytes = 32 << 10;
constexpr int success = 200;

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
  return image.width() > widest ? image.scaledToWidth(widest, Qt::SmoothTransformation) : image;
}

ImageLoader::ImageLoader(HTTPClient client) : client_(std::move(client)), images_(cacheKilobytes) {}

ImageLoader& ImageLoader::shared() {
  static auto& loader = *new ImageLoader(HTTPClient::shared());
  return loader;
}

QImage ImageLoader::image(QUrl const& url) {
  if (auto const* image = images_.object(url)) return *image;
  if (url.scheme() == u"https" && !asked_.contains(url)) {
    asked_.insert(url);
    spawn(MainQueue::shared(), fetch(url));
  }
  return {};
}

Task<> ImageLoader::fetch(QUrl url) {
  auto response = co_await attempt(
      client_.send({.url = url.toString(QUrl::FullyEncoded | QUrl::RemoveFragment).toStdString(),
                    .timeout = longestWait,
                    .largestBody = largestBody}));
  if (response && response.value().status == success) {
    auto const image = co_await on(ThreadPool::shared(), decode(std::move(response.value().body)));
    if (!image.isNull()) {
      images_.insert(url, new QImage(image), std::max<qsizetype>(1, image.sizeInBytes() >> 10));
      // It may be pushed out by others, and then be asked for again.
      asked_.remove(url);
    }
  }
  Q_EMIT finished(url);
}

}  // namespace vek
