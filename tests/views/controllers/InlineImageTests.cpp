// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QImage>

#include "markdown/BlockSequence.hpp"
#include "views/DocumentLayout.hpp"

namespace vek {
namespace {

constexpr qreal width = 300;

/// A document of one line whose image shows as a test says.
struct InlineImageTest : testing::Test {
  ShownImage shown;
  DocumentLayout layout;

  InlineImageTest() {
    layout.setImages([this](RawImageData const&, ImagePlace) { return shown; });
    layout.setWidth(width);
  }

  void show(std::string const& markdown) {
    layout.setBlocks(BlockSequence::of(MarkdownContent(markdown), {}));
    layout.measureTo(1e6);
  }

  void arrive(QSize size) {
    shown.image = QImage(size, QImage::Format_RGB32);
    shown.image.fill(Qt::red);
    layout.imagesChanged([](RawImageData const&) { return true; });
    layout.measureTo(1e6);
  }

  QRectF rectOf(QString const& text) {
    auto const from = layout.text().indexOf(text);
    auto const rects = layout.rectsOf(from, from + text.size());
    return rects.empty() ? QRectF() : rects.front();
  }
};

TEST_F(InlineImageTest, StandsInForItsTextAndBackInTheLine) {
  show("before ![a picture](a.png) after");
  auto const wordsAlone = rectOf("a picture");
  EXPECT_GT(wordsAlone.width(), 20);
  auto const height = layout.height();

  arrive({120, 60});
  EXPECT_NEAR(rectOf("a picture").width(), 120, 1);
  EXPECT_EQ(rectOf("after").y(), rectOf("before").y());
  EXPECT_GT(rectOf("after").left(), rectOf("a picture").right());
  EXPECT_GT(layout.height(), height + 40) << "a line is as high as its image";
  EXPECT_EQ(layout.textToCopy(0, layout.text().size() - 1), "before a picture after");

  QImage page(static_cast<int>(width), static_cast<int>(layout.height()), QImage::Format_RGB32);
  page.fill(Qt::white);
  QPainter painter(&page);
  layout.draw(painter, 0, layout.height(), {});
  painter.end();
  auto const at = rectOf("a picture");
  EXPECT_EQ(page.pixelColor(static_cast<int>(at.center().x()), 10), QColor(Qt::red));
  EXPECT_NE(page.pixelColor(static_cast<int>(at.right()) + 2, 10), QColor(Qt::red));
}

TEST_F(InlineImageTest, IsNeverWiderThanItsRoom) {
  show("before ![](a.png) after");
  EXPECT_EQ(rectOf("after").y(), rectOf("before").y()) << "no text, no image: no room";
  EXPECT_EQ(layout.textToCopy(0, layout.text().size() - 1), "before  after");

  arrive({900, 90});
  EXPECT_GT(rectOf("after").y(), rectOf("before").y() + 30) << "a line of its own";
  EXPECT_LE(rectOf(QString(QChar::ObjectReplacementCharacter)).width(), width);
}

TEST_F(InlineImageTest, LeadsWhereItsLinkLeads) {
  show("before [![a picture](a.png)](https://a.org) after");
  arrive({40, 60});
  auto const at = rectOf("a picture");
  EXPECT_EQ(layout.linkAt({at.center().x(), 5}), "https://a.org");
  EXPECT_EQ(layout.linkAt({rectOf("after").center().x(), 5}), std::nullopt);
}

TEST_F(InlineImageTest, StandsInATable) {
  show("| state | word |\n|---|---|\n| ![good](a.png) fine | text |");
  arrive({30, 40});
  EXPECT_NEAR(rectOf("good").width(), 30, 1);
  EXPECT_EQ(rectOf("fine").y(), rectOf("good").y());
  EXPECT_GT(layout.height(), 60);
}

}  // namespace
}  // namespace vek
