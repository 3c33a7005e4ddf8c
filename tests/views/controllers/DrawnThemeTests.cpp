// SPDX-License-Identifier: MIT
// Every value of a theme shows: a document looks different when it is changed.
#include <gtest/gtest.h>

#include <QImage>

#include "markdown/BlockSequence.hpp"
#include "views/DocumentLayout.hpp"

namespace vek {
namespace {

constexpr char markdown[] =
    "# Title\n\nSome text 123\\\nof two lines.\n\n> quoted\n\n- item\n\n12. number\n\n- [ ] "
    "task\n\n"
    "```\ncode\n```\n\n| a | b |\n|---|---|\n| c | d |\n\n![image](a.png)\n\n---\n\nThe end.";

MarkdownColors colors() {
  return {Qt::black,    Qt::gray,     Qt::blue,  Qt::darkMagenta, Qt::lightGray, Qt::darkGray,
          Qt::darkBlue, Qt::darkCyan, Qt::green, Qt::yellow,      Qt::red};
}

QImage picture(MarkdownEnvironment const& environment) {
  QImage page(400, 900, QImage::Format_RGB32);
  page.fill(Qt::white);
  DocumentLayout layout;
  layout.setColors(colors());
  layout.setWidth(page.width());
  layout.setBlocks(BlockSequence::of(MarkdownContent(markdown), environment));
  QPainter painter(&page);
  layout.draw(painter, 0, page.height(), {});
  return page;
}

using Change = std::function<void(Drawable&)>;
struct Value {
  char const* name;
  Change change;
};

Change style(TextStyle const& style) {
  return [style](Drawable& drawable) { drawable = drawable.styled(style); };
}

std::vector<Value> texts() {
  return {{"size", style({.size = RelativeSize::em(1.5)})},
          {"foreground", style({.foreground = ThemeColor::done})}};
}

std::vector<Value> families() {
  return {{"custom", style({.family = FontProperties::custom{"DejaVu Sans"}})},
          {"system", style({.family = FontProperties::system{FontProperties::Design::serif}})}};
}

std::vector<Value> boxes() {
  return {{"background", [](Drawable& drawable) { drawable.background = ThemeColor::done; }},
          {"border", [](Drawable& drawable) { drawable.border = ThemeColor::done; }},
          {"leading", [](Drawable& drawable) { drawable.padding.leading += 20; }},
          {"top", [](Drawable& drawable) { drawable.padding.top += 20; }},
          {"bottom", [](Drawable& drawable) { drawable.padding.bottom += 20; }}};
}

std::vector<Value> margins() {
  return {{"margin above", [](Drawable& drawable) { drawable.margin.top = 60; }},
          {"margin below", [](Drawable& drawable) { drawable.margin.bottom = 60; }}};
}

std::vector<Value> bars() {
  return {{"bar", [](Drawable& drawable) { drawable.leadingBar = ThemeColor::done; }}};
}

template <class Configuration>
void expectDrawn(char const* name, BlockStyle<Configuration> Theme::* style,
                 std::vector<std::vector<Value>> const& groups) {
  auto const plain = picture({});
  for (auto const& group : groups) {
    for (auto const& value : group) {
      MarkdownEnvironment environment;
      environment.theme.*style = [&, before = environment.theme.*style](auto const& block) {
        auto drawable = before(block);
        value.change(drawable);
        return drawable;
      };
      EXPECT_FALSE(picture(environment) == plain) << name << ": " << value.name;
    }
  }
}

TEST(DrawnTheme, FollowsEachValueOfEachBlock) {
  expectDrawn("paragraph", &Theme::paragraph, {texts(), families(), boxes(), margins(), bars()});
  expectDrawn("blockquote", &Theme::blockquote, {texts(), boxes(), margins(), bars()});
  expectDrawn("codeBlock", &Theme::codeBlock, {texts(), boxes(), margins(), bars()});
  expectDrawn("image", &Theme::image, {texts(), boxes(), margins(), bars()});
  expectDrawn("list", &Theme::list, {texts(), families(), boxes(), margins(), bars()});
  expectDrawn("listItem", &Theme::listItem, {texts(), boxes(), margins(), bars()});
  expectDrawn("table", &Theme::table, {boxes(), margins()});
  expectDrawn("tableCell", &Theme::tableCell, {texts(), families(), boxes()});
  expectDrawn("bulletedListMarker", &Theme::bulletedListMarker, {texts()});
  expectDrawn("numberedListMarker", &Theme::numberedListMarker, {texts()});
  expectDrawn("thematicBreak", &Theme::thematicBreak, {margins()});
}

TEST(DrawnTheme, FollowsEachPropertyOfAFont) {
  auto const shown = [](TextStyle const& style) {
    MarkdownEnvironment environment;
    auto const before = environment.theme.paragraph;
    environment.theme.paragraph = [=](auto const& block) { return before(block).styled(style); };
    return picture(environment);
  };
  std::vector<QImage> const pictures = {
      shown({}),
      shown({.familyVariant = FontProperties::FamilyVariant::monospaced}),
      shown({.capsVariant = FontProperties::CapsVariant::smallCaps}),
      shown({.capsVariant = FontProperties::CapsVariant::lowercaseSmallCaps}),
      shown({.capsVariant = FontProperties::CapsVariant::uppercaseSmallCaps}),
      shown({.digitVariant = FontProperties::DigitVariant::monospaced}),
      shown({.style = FontProperties::Style::italic}),
      shown({.weight = FontProperties::Weight::bold}),
      shown({.width = FontProperties::Width::expanded}),
      shown({.background = ThemeColor::done}),
      shown({.isUnderlined = true}),
      shown({.isStruckThrough = true}),
  };
  for (std::size_t one = 0; one < pictures.size(); ++one)
    for (std::size_t other = 0; other < one; ++other)
      EXPECT_FALSE(pictures[one] == pictures[other]) << one << " and " << other;
}

}  // namespace
}  // namespace vek
