// SPDX-License-Identifier: MIT
#include "markdown/Theme.hpp"

#include <gtest/gtest.h>

#include "markdown/InlineText.hpp"

namespace vek {
namespace {

using Inline = InlineNode;

Theme const& theme = Theme::standard();
TextAttributes const body = theme.text.appliedTo({});

std::vector<InlineRun> runs(Children<InlineNode> const& content) {
  return inlineRuns(content, theme, body);
}

Inline text(char const* content) {
  return Inline::text{content};
}

TEST(FontProperties, SizesFollowTheParentOrTheRoot) {
  FontProperties font;
  EXPECT_EQ(font.points(RelativeSize::em(1)), 13);
  font.resize(RelativeSize::em(2));
  EXPECT_EQ(font.points(RelativeSize::em(1)), 26);
  EXPECT_EQ(font.points(RelativeSize::rem(1.5)), 19.5);
  font.resize(RelativeSize::em(0.5));
  EXPECT_EQ(font.points(RelativeSize::em(1)), 13);
  font.resize(RelativeSize::rem(3));
  EXPECT_EQ(font.points(RelativeSize::em(1)), 39);
  font.resize(10.0);
  EXPECT_EQ(font.points(RelativeSize::em(1)), 10);
  EXPECT_EQ(font.points(RelativeSize::rem(1)), 10);
}

TEST(Theme, HeadingsShrinkByLevelAndKeepTheirMargins) {
  std::array const sizes = {2.0, 1.5, 1.17, 1.0, 0.83, 0.67};
  for (std::size_t level = 0; level < sizes.size(); ++level) {
    auto const heading = theme.headings[level]({.label = {.text = body}, .content = {}});
    EXPECT_DOUBLE_EQ(heading.text.font.points(RelativeSize::em(1)), 13 * sizes[level]);
    EXPECT_EQ(heading.margin, (BlockMargin{19.5, 13}));
  }
}

TEST(InlineText, NestedStylesAddUp) {
  auto const made = runs({Inline::strong{{text("a"), Inline::emphasis{{Inline::code{"b"}}}}}});
  ASSERT_EQ(made.size(), 2);
  auto const& font = made[1].attributes.font;
  EXPECT_EQ(font.weight, FontProperties::Weight::semibold);
  EXPECT_EQ(font.style, FontProperties::Style::italic);
  EXPECT_EQ(font.familyVariant, FontProperties::FamilyVariant::monospaced);
  EXPECT_DOUBLE_EQ(font.scale, 0.94);
  EXPECT_EQ(made[0].attributes.font.style, FontProperties::Style::normal);
}

TEST(InlineText, BreaksStartAFreshLineWithoutLeadingBlanks) {
  auto const lines = [](Inline const& between) {
    return runs({text(" a"), between, text(" b")})[0].text;
  };
  EXPECT_EQ(lines(Inline::softBreak{}), "a  b");
  EXPECT_EQ(lines(Inline::lineBreak{}), "a\nb");
  for (auto const* tag : {"<br>", "<BR/>", "<br class='x'>", "</br>"})
    EXPECT_EQ(lines(Inline::html{tag}), "a\nb") << tag;
  for (auto const* tag : {"<b>", "<brx>", "<!-- br -->"})
    EXPECT_EQ(lines(Inline::html{tag}), std::string("a") + tag + " b");
  EXPECT_EQ(inlineRuns({text("a"), Inline::softBreak{}, text("b")}, theme, body,
                       SoftBreak::Mode::lineBreak)[0]
                .text,
            "a\nb");
}

TEST(InlineText, LinksCarryWhereTheyLeadThroughTheirStyles) {
  auto const made = runs({Inline::link{"/a", {Inline::strong{{text("b")}}}}, text("c")});
  ASSERT_EQ(made.size(), 2);
  EXPECT_EQ(made[0].destination, "/a");
  EXPECT_EQ(made[0].attributes.foreground, ThemeColor::link);
  EXPECT_EQ(made[1].destination, std::nullopt);
}

TEST(InlineText, ThePiecesOfALinkShareWhereItLeads) {
  auto const made = runs({Inline::link{"/a", {text("b"), Inline::strong{{text("c")}}}}});
  ASSERT_EQ(made.size(), 2);
  EXPECT_EQ(&made[0].destination->string(), &made[1].destination->string());
}

TEST(InlineText, OnlyAParagraphOfImagesAloneIsAFlow) {
  Inline const image = Inline::image{"a.png", {text("a "), Inline::emphasis{{text("b")}}}};
  RawImageData const plain{"a.png", "a b"};
  RawImageData const linked{"a.png", "a b", "/c"};
  EXPECT_EQ(
      imageFlow({image, Inline::softBreak{}, Inline::link{"/c", {image}}, Inline::lineBreak{}}),
      (ImageFlow{plain, linked, ImageFlowBreak{}}));
  EXPECT_EQ(imageFlow({image, text(" and")}), std::nullopt);
  EXPECT_EQ(imageFlow({Inline::lineBreak{}}), std::nullopt);
  EXPECT_EQ(imageFlow({}), std::nullopt);
}

}  // namespace
}  // namespace vek
