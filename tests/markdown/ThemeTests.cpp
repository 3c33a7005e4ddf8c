// SPDX-License-Identifier: MIT
#include "markdown/Theme.hpp"

#include <gtest/gtest.h>

#include <cmath>

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

TEST(TextStyle, ChangesWhatItNamesAndNothingElse) {
  TextStyle const style{.family = FontProperties::custom{"Slab"},
                        .capsVariant = FontProperties::CapsVariant::smallCaps,
                        .digitVariant = FontProperties::DigitVariant::monospaced,
                        .width = FontProperties::Width::condensed};
  auto expected = body;
  expected.font.family = FontProperties::custom{"Slab"};
  expected.font.capsVariant = FontProperties::CapsVariant::smallCaps;
  expected.font.digitVariant = FontProperties::DigitVariant::monospaced;
  expected.font.width = FontProperties::Width::condensed;
  EXPECT_EQ(style.appliedTo(body), expected);
  EXPECT_EQ(TextStyle{}.appliedTo(expected), expected);
}

/// Lengths in points, of a block whose text around it has 13.
struct Look {
  char const* name;
  Drawable drawable;
  double size = 13;
  double lineSpacing = 0;
  BlockMargin margin = {};
  Drawable::Padding padding = {};
};

std::vector<Look> looks() {
  Drawable const label{.text = body};
  BlockConfiguration const block{.label = label, .content = {}};
  auto const heading = [&](std::size_t level) { return theme.headings[level - 1](block); };
  BlockMargin const below{0, 13};
  BlockMargin const around{19.5, 13};
  Drawable::Padding const cell{9.36, 9.36, 4.55, 4.55};
  return {
      {"body", label},
      {"heading 1", heading(1), 26, 0, around},
      {"heading 2", heading(2), 19.5, 0, around},
      {"heading 3", heading(3), 15.21, 0, around},
      {"heading 4", heading(4), 13, 0, around},
      {"heading 5", heading(5), 10.79, 0, around},
      {"heading 6", heading(6), 8.71, 0, around},
      {"paragraph", theme.paragraph(block), 13, 1.95, below},
      {"blockquote", theme.blockquote(block), 13, 0, below, {26, 13}},
      {"image", theme.image(block), 13, 0, below},
      {"list", theme.list(block), 13, 0, below, {13, 0}},
      {"listItem", theme.listItem(block), 13, 1.95},
      {"header cell", theme.tableCell({.row = 0, .label = label}), 13, 1.95, {}, cell},
      {"cell", theme.tableCell({.row = 1, .label = label}), 13, 1.95, {}, cell},
      {"thematicBreak", theme.thematicBreak(block), 13, 0, {26, 26}},
  };
}

TEST(Theme, HasTheNumbersOfEachElement) {
  auto const near = [](double one, double other) { return std::abs(one - other) < 1e-9; };
  for (auto const& look : looks()) {
    auto const& drawable = look.drawable;
    auto const& padding = drawable.padding;
    EXPECT_DOUBLE_EQ(drawable.text.font.points(RelativeSize::em(1)), look.size) << look.name;
    EXPECT_DOUBLE_EQ(drawable.lineSpacing, look.lineSpacing) << look.name;
    EXPECT_EQ(drawable.margin, look.margin) << look.name;
    EXPECT_TRUE(near(padding.leading, look.padding.leading) &&
                near(padding.trailing, look.padding.trailing) &&
                near(padding.top, look.padding.top) && near(padding.bottom, look.padding.bottom))
        << look.name;
  }
  auto const code = theme.codeBlock({.language = {}, .content = {}, .label = {.text = body}});
  EXPECT_TRUE(code.isScrollable);
  EXPECT_DOUBLE_EQ(code.text.font.scale, 0.94);
  EXPECT_DOUBLE_EQ(code.padding.leading, 0.94 * 13);
  EXPECT_EQ(code.margin, (BlockMargin{0, 13}));
  for (auto const& marker : {theme.bulletedListMarker({.label = {.text = body}}),
                             theme.numberedListMarker({.label = {.text = body}}),
                             theme.taskListMarker({.label = {.text = body}})})
    EXPECT_EQ(marker.minimumWidth, 19.5);
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
  using enum SoftBreak::Mode;
  for (auto const mode : {space, lineBreak}) {
    auto const made = inlineRuns({text("a"), Inline::html{"<br>"}, Inline::softBreak{}, text("b"),
                                  Inline::softBreak{}, text("c")},
                                 theme, body, mode);
    EXPECT_EQ(made[0].text, mode == space ? "a\nb c" : "a\nb\nc");
  }
}

TEST(InlineText, LinksCarryWhereTheyLeadThroughTheirStyles) {
  auto const made = runs({Inline::link{"/a", {Inline::strong{{text("b")}}}}, text("c")});
  ASSERT_EQ(made.size(), 2);
  EXPECT_EQ(made[0].destination, "/a");
  EXPECT_EQ(made[0].attributes.foreground, ThemeColor::link);
  EXPECT_EQ(made[1].destination, std::nullopt);
}

TEST(InlineText, ThePiecesOfALinkShareWhereItLeads) {
  constexpr std::size_t pieces = 20'000;
  std::string label, images;
  for (std::size_t i = 0; i < pieces / 2; ++i) {
    label += "*a*b";
    images += "![](c)";
  }
  // As long as the pieces are many: copies would take gigabytes.
  auto const target = "](<" + std::string(1'000'000, 'd') + ">)";
  auto const content = MarkdownContent("[" + label + target + "\n\n[" + images + target);
  auto const line = [&](std::size_t block) {
    return std::get<BlockNode::paragraph>(content.blocks[block].value).content;
  };
  auto const made = runs(line(0));
  ASSERT_EQ(made.size(), pieces);
  for (auto const& run : made)
    ASSERT_EQ(&run.destination->string(), &made[0].destination->string());
  auto const flow = imageFlow(line(1));
  ASSERT_EQ(flow.value().size(), pieces / 2);
  auto const targetOf = [](auto const& item) {
    return &std::get<RawImageData>(item).destination->string();
  };
  EXPECT_EQ(targetOf(flow->front()), targetOf(flow->back()));
}

TEST(InlineText, OnlyAParagraphOfImagesAloneIsAFlow) {
  Inline const image = Inline::image{"a.png", {text("a "), Inline::emphasis{{text("b")}}}};
  RawImageData const plain{"a.png", "a b"};
  RawImageData const linked{"a.png", "a b", "/c"};
  EXPECT_EQ(
      imageFlow({image, Inline::softBreak{}, Inline::link{"/c", {image}}, Inline::lineBreak{}}),
      (ImageFlow{plain, linked, Inline::lineBreak{}}));
  EXPECT_EQ(imageFlow({image, text(" and")}), std::nullopt);
  EXPECT_EQ(imageFlow({Inline::lineBreak{}}), std::nullopt);
  EXPECT_EQ(imageFlow({}), std::nullopt);
}

}  // namespace
}  // namespace vek
