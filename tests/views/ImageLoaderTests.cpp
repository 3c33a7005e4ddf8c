// SPDX-License-Identifier: MIT
#include "views/ImageLoader.hpp"

#include <gtest/gtest.h>

#include <QBuffer>

#include <vector>

#include "support/RunMainQueue.hpp"

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
  ImageLoader loader{HTTPClient{.send = [this](HTTPRequest request) -> Task<HTTPResponse> {
    requests.push_back(request);
    co_return answer;
  }}};

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
  EXPECT_EQ(load("https://a.org/b.png#c").size(), QSize(4, 3));
  ASSERT_EQ(requests.size(), 1);
  EXPECT_EQ(requests[0].url, "https://a.org/b.png");
  EXPECT_EQ(requests[0].timeout, std::chrono::seconds(20));
  EXPECT_EQ(requests[0].largestBody, std::size_t{8} << 20U);
}

TEST_F(LoaderTest, AsksNobodyForOtherSchemes) {
  for (auto const* url :
       {"http://a.org/b.png", "file:///b.png", "data:image/png;base64,AA", "b.png", ""})
    EXPECT_TRUE(loader.image(QUrl(url)).isNull());
  EXPECT_TRUE(requests.empty());
}

TEST_F(LoaderTest, DoesNotAskAgainForWhatDidNotCome) {
  answer = {.status = 404, .body = picture(1, 1)};
  EXPECT_TRUE(load("https://a.org/b.png").isNull());
  EXPECT_EQ(requests.size(), 1);
}

TEST(DecodedImage, IsAPictureOfBoundedSize) {
  EXPECT_EQ(decodedImage(QByteArray::fromStdString(picture(3000, 30))).size(), QSize(2000, 20));
  EXPECT_TRUE(decodedImage(QByteArray::fromStdString(picture(5000, 5000))).isNull());
  EXPECT_TRUE(decodedImage("<svg xmlns='http://www.w3.org/2000/svg'/>").isNull());
  EXPECT_TRUE(decodedImage("text").isNull());
}

}  // namespace
}  // namespace vek
