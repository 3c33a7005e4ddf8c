// SPDX-License-Identifier: MIT
#include "markdown/BlockSequence.hpp"

#include <gmock/gmock.h>

#include <string>
#include <utility>

namespace vek {
namespace {

std::vector<DrawnBlock> drawn(std::string const& markdown,
                              MarkdownEnvironment const& environment = {}) {
  return BlockSequence::of(MarkdownContent(markdown), environment);
}

std::string textOf(DrawnBlock const& block) {
  std::string text;
  for (auto const& run : std::get<DrawnBlock::Text>(block.content).runs) text += run.text;
  return text;
}

TEST(BlockSequence, NothingIsDrawnOfAnEmptyDocument) {
  EXPECT_TRUE(drawn("").empty());
  EXPECT_TRUE(drawn("[a]: b").empty());
}

TEST(BlockSequence, TheLargestMarginBetweenTwoBlocksIsTheirGap) {
  auto const blocks = drawn("# A\n\nb\n\nc\n\n## D\n\n***\n\n> e\n\nf");
  std::vector<double> gaps;
  for (auto const& block : blocks) gaps.push_back(block.gapAbove);
  EXPECT_EQ(gaps, (std::vector<double>{0, 13, 13, 19.5, 26, 26, 13}));
}

TEST(BlockSequence, ItemsOfATightListStandTogether) {
  auto const tight = drawn("a\n\n- b\n- c\n  - d\n\ne");
  std::vector<double> gaps;
  for (auto const& block : tight) gaps.push_back(block.gapAbove);
  EXPECT_THAT(gaps,
              testing::Pointwise(testing::DoubleEq(), std::vector<double>{0, 13, 5.2, 5.2, 13}));
  EXPECT_EQ(drawn("- b\n\n- c")[1].gapAbove, 13);
}

TEST(BlockSequence, MarkersOfANumberedListShareTheWidthOfTheWidest) {
  MarkdownEnvironment environment;
  environment.markerWidth = [](Drawable const& marker) {
    return 10.0 * static_cast<double>(marker.label.size());
  };
  auto const blocks = drawn("8. a\n9. b\n10. c", environment);
  for (auto const& block : blocks) {
    EXPECT_EQ(block.markers.at(0).width, 30);
    EXPECT_EQ(block.leading, 13 + 30 + 6.5);
  }
  EXPECT_EQ(blocks[0].markers[0].drawable.label, "8.");
  EXPECT_EQ(blocks[2].markers[0].drawable.label, "10.");
}

TEST(BlockSequence, AnItemHasItsMarkersOnItsFirstBoxOnly) {
  auto const blocks = drawn("- - a\n\n    b\n- [x] c\n-");
  ASSERT_EQ(blocks.size(), 4);
  ASSERT_EQ(blocks[0].markers.size(), 2);
  EXPECT_EQ(blocks[0].markers[1].drawable.label, "◦");
  EXPECT_TRUE(blocks[1].markers.empty());
  EXPECT_EQ(blocks[2].markers.at(0).drawable.symbol, "checkmark.square.fill");
  EXPECT_EQ(blocks[3].markers.at(0).drawable.symbol, "square");
  EXPECT_EQ(textOf(blocks[3]), "");
}

TEST(BlockSequence, ItemsKeepTheirMarkersHoweverDeepTheyAre) {
  std::string steps;
  for (std::size_t level = 0; level < 12; ++level) steps += std::string(level * 2, ' ') + "- a\n";
  for (auto const& block : drawn(steps)) {
    ASSERT_EQ(block.markers.size(), 1);
    EXPECT_EQ(block.markers[0].left + block.markers[0].width + 6.5, block.leading);
  }
}

TEST(BlockSequence, QuotesAddABarAndMoveIn) {
  auto const blocks = drawn("> a\n>\n> > b\n\nc");
  ASSERT_TRUE(blocks[0].frame);
  EXPECT_EQ(blocks[0].frame->leadingBar, ThemeColor::quoteBar);
  EXPECT_EQ(blocks[1].frame->outer, blocks[0].frame);
  EXPECT_EQ(blocks[1].leading, 52);
  EXPECT_EQ(blocks[1].trailing, 26);
  EXPECT_FALSE(blocks[2].frame);
}

TEST(BlockSequence, WhatIsAroundABlockShapesItUnlessItHasAStyleOfItsOwn) {
  MarkdownEnvironment environment;
  environment.theme.paragraph = [](auto const& paragraph) { return paragraph.label; };
  environment.theme.listItem = [](auto const& item) {
    return item.label.spaced(7.0).padded(3.0, 4.0, 5.0, 6.0).margins(20.0, 0.0);
  };
  auto const blocks = drawn("a\n\n- b\n- c", environment);
  EXPECT_EQ(blocks[0].drawable.lineSpacing, 0);
  EXPECT_EQ(blocks[1].drawable.lineSpacing, 7);
  EXPECT_EQ(blocks[1].gapAbove, 20);
  EXPECT_EQ(blocks[1].paddingAbove, 5);
  EXPECT_EQ(blocks[2].paddingBelow, 6);
  EXPECT_EQ(blocks[1].trailing, 4);
  EXPECT_EQ(blocks[1].markers.at(0).left, 13 + 3);
  EXPECT_NE(blocks[1].frame, blocks[2].frame);
  EXPECT_EQ(blocks[1].frame->outer, blocks[2].frame->outer);
}

TEST(BlockSequence, CodeGoesThroughTheHighlighter) {
  MarkdownEnvironment environment;
  environment.codeSyntaxHighlighter =
      [](std::string const& code, std::string_view language,
         TextAttributes const& attributes) -> std::vector<InlineRun> {
    return {{std::string(language) + ":", attributes}, {code, attributes}};
  };
  auto const blocks = drawn("```sh -x\nls\n```\n\n    ls", environment);
  EXPECT_EQ(textOf(blocks[0]), "sh:ls");
  EXPECT_EQ(textOf(blocks[1]), ":ls");
  EXPECT_TRUE(blocks[0].drawable.isScrollable);
}

TEST(BlockSequence, RawHTMLIsTextApartFromTheLineBreak) {
  EXPECT_EQ(textOf(drawn("<script>a</script>\n")[0]), "<script>a</script>");
  EXPECT_EQ(textOf(drawn("a <b>c</b><br/>d")[0]), "a <b>c</b>\nd");
  EXPECT_EQ(textOf(drawn("<br>\nImportant <i>words</i>\n")[0]), "\nImportant <i>words</i>");
  EXPECT_EQ(textOf(drawn("<div>a</BR >b < c <br\n")[0]), "<div>a\nb < c <br");
}

TEST(BlockSequence, ImagesOfTheOtherColourSchemeAreLeftOut) {
  auto const texts = [](ColorScheme scheme) {
    MarkdownEnvironment environment;
    environment.colorScheme = scheme;
    std::string all;
    for (auto const& block : drawn("a ![b](c#gh-dark-mode-only)\n\n![d](e#gh-light-mode-only)"
                                   "\n\n[![f](g#gh-dark-mode-only)](h) ![i](j#k)",
                                   environment)) {
      if (auto const* flow = std::get_if<ImageFlow>(&block.content)) {
        for (auto const& item : *flow) all += std::get<RawImageData>(item).alt;
      } else {
        all += textOf(block);
      }
      all += "|";
    }
    return all;
  };
  EXPECT_EQ(texts(ColorScheme::light), "a |d|i|");
  EXPECT_EQ(texts(ColorScheme::dark), "a b|fi|");
}

TEST(BlockSequence, WhatNestsWithoutEndIsDrawnWithoutRecursion) {
  Children<BlockNode> nested = {BlockNode::paragraph{{InlineNode::text{"a"}}}};
  for (int depth = 0; depth < 20'000; ++depth) {
    nested = {BlockNode::blockquote{std::move(nested)}};
    nested = {BlockNode::bulletedList{true, {RawListItem{std::move(nested)}}}};
  }
  auto const blocks = BlockSequence::of(MarkdownContent(std::move(nested)), {});
  ASSERT_EQ(blocks.size(), 1);
  EXPECT_EQ(textOf(blocks[0]), "a");
  EXPECT_LT(blocks[0].leading, 300);
  EXPECT_LT(blocks[0].markers.size(), 10);
}

}  // namespace
}  // namespace vek
