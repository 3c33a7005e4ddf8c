// SPDX-License-Identifier: MIT
#include "views/DocumentLayout.hpp"

#include <gtest/gtest.h>

#include <QImage>

#include "markdown/BlockSequence.hpp"
#include "markdown/PlainTextBlocks.hpp"

namespace vek {
namespace {

constexpr qreal width = 300;
constexpr qreal all = 1e9;

std::string repeated(std::string const& text, int count) {
  std::string whole;
  for (int i = 0; i < count; ++i) whole += text;
  return whole;
}

struct DocumentLayoutTest : testing::Test {
  DocumentLayout layout;

  DocumentLayoutTest() { layout.setWidth(width); }

  void show(std::string const& markdown) {
    layout.setBlocks(BlockSequence::of(MarkdownContent(markdown), {}));
  }

  /// The places of the characters from each hundredth.
  std::vector<QRectF> places() {
    std::vector<QRectF> rects;
    for (qsizetype i = 0; i + 1 < layout.text().size(); i += 97)
      for (auto const& rect : layout.rectsOf(i, i + 1)) rects.push_back(rect);
    return rects;
  }

  std::size_t layoutsOf(auto work) {
    auto const before = layout.layoutCount();
    work();
    return layout.layoutCount() - before;
  }
};

TEST_F(DocumentLayoutTest, SlicesOfAParagraphBreakItsLinesAsOnePieceDoes) {
  auto const blocks = BlockSequence::of(
      MarkdownContent(repeated("Some *slanted words* and `code` 𝄞 with **more of it**, ", 300)),
      {});
  auto const& block = blocks.front();
  auto const& runs = std::get<DrawnBlock::Text>(block.content).runs;
  MarkdownColors const colors;
  ImageProvider const images;
  TextPiece whole(runs, block.drawable, {colors, images}, width, 0);
  whole.layOut(width, TextPiece::Wrapping::anywhere);

  layout.setBlocks(blocks);
  layout.measureTo(all);
  ASSERT_GT(layout.layoutCount(), 5U);
  EXPECT_EQ(layout.text(), textOf(runs) + u'\n');
  EXPECT_NEAR(layout.height(), whole.height(), 10);
  for (qsizetype i = 0; i < whole.length(); i += 61) {
    auto const expected = whole.rectsOf(i, i + 1);
    auto const found = layout.rectsOf(i, i + 1);
    ASSERT_EQ(found.size(), expected.size()) << i;
    // The second half of a character has no place of its own.
    if (expected.empty() || layout.text()[i].isLowSurrogate()) continue;
    EXPECT_NEAR(found[0].x(), expected[0].x(), 0.1) << i;
    EXPECT_NEAR(found[0].y(), expected[0].y(), 10) << i;
    EXPECT_EQ(layout.positionAt(found[0].center() - QPointF(found[0].width() / 4, 0)), i);
  }
}

TEST_F(DocumentLayoutTest, LinesBeginWhereTheirDirectionDoes) {
  show("\u05e9\u05dc\u05d5\u05dd\n\nabc\n");
  EXPECT_NEAR(layout.rectsOf(0, 1).front().right(), width, 1);
  EXPECT_NEAR(layout.rectsOf(5, 6).front().left(), 0, 1);
}

TEST_F(DocumentLayoutTest, TheBarOfAQuoteGoesOnBetweenItsParagraphs) {
  show("> a\n>\n> b");
  layout.measureTo(all);
  auto const gap = layout.rectsOf(2, 3).front().top() - 2;
  QImage page(static_cast<int>(width), static_cast<int>(gap), QImage::Format_RGB32);
  page.fill(Qt::white);
  QPainter painter(&page);
  layout.draw(painter, 0, gap, {});
  for (int y = 0; y < page.height(); ++y) EXPECT_NE(page.pixel(9, y), page.pixel(0, y)) << y;
}

TEST_F(DocumentLayoutTest, ALongLineOfPlainTextIsCopiedAsOne) {
  auto const words = repeated("Word after word was said. ", 500);
  layout.setBlocks(plainTextBlocks(words + "\nnext"));
  layout.measureTo(all);
  EXPECT_EQ(layout.textToCopy(0, layout.text().size()).toStdString(), words + "\nnext");
}

TEST_F(DocumentLayoutTest, OnlyWhatIsSeenOfALongBlockIsLaidOut) {
  auto const cell = "| word | and |\n";
  for (auto const& [line, count] :
       {std::pair("Word *after* word. ", 10'000), std::pair("> Word after `word` <br>\n", 10'000),
        std::pair("    code();\n", 20'000), std::pair(cell, 10'000),
        std::pair("![](https://a.org/b.png) ", 10'000)}) {
    show((line == cell ? "|a|b|\n|-|-|\n" : "") + repeated(line, count));
    ASSERT_EQ(layout.blocks().size(), 1U) << "read as Markdown";
    ASSERT_FALSE(layout.text().contains(u'!')) << "read as Markdown";
    EXPECT_LT(layoutsOf([&] { layout.measureTo(600); }), 30U) << line;
    QImage page(static_cast<int>(width), 600, QImage::Format_RGB32);
    QPainter painter(&page);
    EXPECT_LT(layoutsOf([&] { layout.draw(painter, 0, 600, {}); }), 30U) << line;
  }
}

TEST_F(DocumentLayoutTest, LinesOfCodeMoveSidewaysTogether) {
  show("```\nfirst\n" + repeated("x\n", 3000) + repeated("wide", 300) + "\n```");
  layout.measureTo(all);
  auto const before = layout.rectsOf(0, 1).front().x();
  EXPECT_TRUE(layout.moveSideways({10, 10}, 50));
  EXPECT_EQ(layout.rectsOf(0, 1).front().x(), before - 50);
}

TEST_F(DocumentLayoutTest, AnImageThatComesMeasuresItsBlockAlone) {
  ShownImage shown;
  layout.setImages([&](RawImageData const& image, ImagePlace) {
    return image.source == "come.png" ? shown : ShownImage{};
  });
  show(repeated("Text.\n\n", 200) + "![a](come.png)\n\n" + repeated("Words *and* ", 500) +
       "![b](come.png)" + repeated(" go on", 2000) + "\n\n![c](other.png)\n\n" +
       repeated("More.\n\n", 200));
  layout.measureTo(all);
  auto const height = layout.height();
  shown.image = QImage(100, 80, QImage::Format_RGB32);
  auto const isIt = [](RawImageData const& image) { return image.source == "come.png"; };
  EXPECT_LT(layoutsOf([&] { layout.imagesChanged(isIt); }), 12U);
  EXPECT_GT(layout.height(), height + 120);
  auto const place = layout.rectsOf(1200, 1201);
  ASSERT_EQ(place.size(), 1U);
  EXPECT_EQ(place[0].size(), QSizeF(100, 80)) << "the image has the place of its text";

  auto const moved = places();
  layout.setWidth(width + 1);
  layout.setWidth(width);
  layout.measureTo(all);
  EXPECT_EQ(places(), moved) << "as if it had been there before";
}

}  // namespace
}  // namespace vek
