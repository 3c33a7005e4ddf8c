// SPDX-License-Identifier: MIT
#include "views/ImageLoader.hpp"

#include <gtest/gtest.h>

#include <QBuffer>

#include <optional>
#include <vector>

#include "support/PendingCalls.hpp"
#include "support/RunMainQueue.hpp"
#include "views/DocumentImages.hpp"

namespace vek {
namespace {

std::string picture(int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::red);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.save(&buffer, "PNG");
  return bytes.toStdString();
}

struct LoaderTest : testing::Test {
  std::vector<HTTPRequest> requests;
  HTTPResponse answer = {.status = 200, .body = picture(4, 3)};
  int finished = 0;
  HTTPClient const client{.send = [this](HTTPRequest request) -> Task<HTTPResponse> {
    requests.push_back(request);
    co_return answer;
  }};
  ImageLoader loader{client, std::chrono::hours(1)};
  DocumentImages document{loader};

  LoaderTest() {
    QObject::connect(&loader, &ImageLoader::finished, [this] { ++finished; });
  }

  /// What is there once the fetch has ended.
  QImage load(char const* url) {
    static_cast<void>(loader.image(QUrl(url)));
    test::runMainQueueUntil([&] { return finished > 0; });
    return loader.image(QUrl(url));
  }
};

TEST_F(LoaderTest, FetchesAnImageOnceWithinItsBounds) {
  EXPECT_EQ(load("https://a.org/b.png").size(), QSize(4, 3));
  ASSERT_EQ(requests.size(), 1);
  EXPECT_EQ(requests[0].url, "https://a.org/b.png");
  EXPECT_EQ(requests[0].timeout, std::chrono::seconds(20));
  EXPECT_EQ(requests[0].largestBody, std::size_t{8} << 20U);
}

TEST_F(LoaderTest, AsksNobodyForOtherSchemes) {
  for (auto const* url :
       {"http://a.org/b.png", "file:///b.png", "data:image/png;base64,AA", "b.png", ""})
    EXPECT_TRUE(loader.image(QUrl(url)).isNull());
  test::runMainQueue();
  EXPECT_TRUE(requests.empty());
}

TEST_F(LoaderTest, AsksAgainForWhatDidNotComeOnlyAfterATime) {
  answer = {.status = 404, .body = picture(1, 1)};
  EXPECT_TRUE(load("https://a.org/b.png").isNull());
  test::runMainQueue();
  EXPECT_EQ(requests.size(), 1);

  ImageLoader impatient(client, {});
  for (std::size_t tries = 2; tries < 4; ++tries) {
    static_cast<void>(impatient.image(QUrl("https://a.org/b.png")));
    EXPECT_TRUE(test::runMainQueueUntil([&] { return requests.size() == tries; }));
    test::runMainQueue();
  }
}

TEST_F(LoaderTest, ADocumentHoldsItsImagesWhateverTheCacheHolds) {
  answer.body = picture(2000, 8000);
  std::vector<QUrl> urls;
  for (auto const* name : {"a", "b", "c", "d", "e", "f"})
    urls.emplace_back(QStringLiteral("https://a.org/%1.png").arg(QLatin1String(name)));
  int changes = 0;
  QObject::connect(&document, &DocumentImages::changed, [&] { ++changes; });
  for (auto const& url : urls) EXPECT_TRUE(document.image(url).isNull());
  ASSERT_TRUE(test::runMainQueueUntil([&] { return changes == 6; }, std::chrono::seconds(60)));
  for (auto const& url : urls) EXPECT_EQ(document.image(url).size(), QSize(1000, 4000));
  test::runMainQueue();
  EXPECT_EQ(requests.size(), urls.size());
}

TEST_F(LoaderTest, ADocumentHearsOfItsOwnImagesAndFetchesTheVariantsOfOneOnce) {
  int changes = 0;
  QObject::connect(&document, &DocumentImages::changed, [&] { ++changes; });
  static_cast<void>(load("https://a.org/other.png"));
  EXPECT_EQ(changes, 0);
  static_cast<void>(document.image(QUrl("https://a.org/b.png#gh-light-mode-only")));
  static_cast<void>(document.image(QUrl("https://a.org/b.png#gh-dark-mode-only")));
  EXPECT_TRUE(test::runMainQueueUntil([&] { return changes == 1; }));
  EXPECT_EQ(document.image(QUrl("https://a.org/b.png#gh-dark-mode-only")).size(), QSize(4, 3));
  EXPECT_EQ(requests.size(), 2);
}

TEST_F(LoaderTest, FetchesAFewAtOnceAndThenThoseThatAreStillWanted) {
  test::PendingCalls<HTTPResponse> calls;
  ImageLoader slow({.send = [&](HTTPRequest request) {
    requests.push_back(request);
    return calls.call();
  }});
  DocumentImages staying(slow);
  std::optional<DocumentImages> left(std::in_place, slow);
  auto const url = [](int index) { return QUrl(QStringLiteral("https://a.org/%1").arg(index)); };
  for (int i = 0; i < 9; ++i) static_cast<void>((i < 8 ? *left : staying).image(url(i)));
  static_cast<void>(staying.image(url(7)));
  test::runMainQueue();
  EXPECT_EQ(calls.waiting(), 6);

  left.reset();
  auto const next = [&] {
    auto const before = requests.size();
    calls.answer(HTTPResponse(answer));
    test::runMainQueueUntil([&] { return requests.size() > before; });
    return requests.back().url;
  };
  EXPECT_EQ(next(), "https://a.org/7");
  EXPECT_EQ(next(), "https://a.org/8");
  static_cast<void>(staying.image(url(6)));
  EXPECT_EQ(next(), "https://a.org/6");
  while (calls.waiting() > 0) calls.answer(HTTPResponse(answer));
  EXPECT_TRUE(test::runMainQueueUntil([&] { return !staying.image(url(6)).isNull(); }));
}

TEST(DecodedImage, IsAPictureOfBoundedSize) {
  EXPECT_EQ(decodedImage(QByteArray::fromStdString(picture(3000, 30))).size(), QSize(2000, 20));
  EXPECT_EQ(decodedImage(QByteArray::fromStdString(picture(1, 100'000))).size(), QSize(1, 4000));
  EXPECT_EQ(decodedImage(QByteArray::fromStdString(picture(2000, 3000))).size(), QSize(1633, 2449));
  EXPECT_TRUE(decodedImage(QByteArray::fromStdString(picture(5000, 5000))).isNull());
  EXPECT_TRUE(decodedImage("<svg xmlns='http://www.w3.org/2000/svg'/>").isNull());
  EXPECT_TRUE(decodedImage("text").isNull());
}

}  // namespace
}  // namespace vek
