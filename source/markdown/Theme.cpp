// SPDX-License-Identifier: MIT
#include "markdown/Theme.hpp"

#include <fmt/format.h>

#include <algorithm>

namespace vek {

namespace {

constexpr auto em = RelativeSize::em;
constexpr auto rem = RelativeSize::rem;
constexpr double bodySize = 13;
constexpr auto lineSpacing = em(0.15);

BlockStyle<BlockConfiguration> heading(double size, ThemeColor color) {
  return [=](BlockConfiguration const& heading) {
    return heading.label
        .styled({.weight = FontProperties::Weight::semibold, .size = em(size), .foreground = color})
        .margins(rem(1.5), rem(1));
  };
}

std::array<BlockStyle<BlockConfiguration>, 6> headings() {
  using enum ThemeColor;
  return {heading(2, primary), heading(1.5, primary),  heading(1.17, primary),
          heading(1, primary), heading(0.83, primary), heading(0.67, secondary)};
}

Drawable paragraph(BlockConfiguration const& paragraph) {
  return paragraph.label.spaced(lineSpacing).margins(0.0, em(1));
}

Drawable blockquote(BlockConfiguration const& quote) {
  auto drawable = quote.label.styled({.foreground = ThemeColor::secondary})
                      .padded(em(2), em(1))
                      .margins(0.0, em(1));
  drawable.leadingBar = ThemeColor::quoteBar;
  return drawable;
}

Drawable codeBlock(CodeBlockConfiguration const& code) {
  auto drawable = code.label
                      .styled({.familyVariant = FontProperties::FamilyVariant::monospaced,
                               .size = em(0.94),
                               .foreground = ThemeColor::code})
                      .spaced(em(0.225))
                      .padded(em(1), em(1), em(0.75), em(0.75))
                      .margins(0.0, rem(1));
  drawable.isScrollable = true;
  drawable.background = ThemeColor::ground;
  drawable.border = ThemeColor::border;
  return drawable;
}

Drawable marker(Drawable const& label, std::string text) {
  auto drawable = label.spaced(lineSpacing);
  drawable.label = std::move(text);
  drawable.minimumWidth = label.text.font.points(em(1.5));
  return drawable;
}

Drawable bulletedListMarker(ListMarkerConfiguration const& item) {
  constexpr std::array bullets = {"•", "◦", "▪"};
  auto const level = static_cast<std::size_t>(std::clamp(item.listLevel, 1, 3));
  return marker(item.label.styled({.foreground = ThemeColor::secondary}), bullets[level - 1]);
}

Drawable numberedListMarker(ListMarkerConfiguration const& item) {
  return marker(item.label.styled({.foreground = ThemeColor::secondary}),
                fmt::format("{}.", item.itemNumber));
}

Drawable taskListMarker(TaskListMarkerConfiguration const& task) {
  auto drawable =
      marker(task.label.styled(
                 {.foreground = task.isCompleted ? ThemeColor::done : ThemeColor::secondary}),
             "");
  drawable.symbol = task.isCompleted ? "checkmark.square.fill" : "square";
  return drawable;
}

Drawable table(BlockConfiguration const& table) {
  auto drawable = table.label.margins(em(1.25), em(1.25));
  drawable.border = ThemeColor::border;
  return drawable;
}

Drawable tableCell(TableCellConfiguration const& cell) {
  auto const weight =
      cell.row == 0 ? FontProperties::Weight::semibold : FontProperties::Weight::regular;
  auto drawable = cell.label.styled({.weight = weight})
                      .spaced(lineSpacing)
                      .padded(em(0.72), em(0.72), em(0.35), em(0.35));
  if (cell.row == 0) drawable.background = ThemeColor::ground;
  return drawable;
}

Drawable thematicBreak(BlockConfiguration const& rule) {
  auto drawable = rule.label.margins(em(2), em(2));
  drawable.border = ThemeColor::border;
  return drawable;
}

/// Its text is the one that stands in its place.
Drawable image(BlockConfiguration const& image) {
  return image.label
      .styled({.style = FontProperties::Style::italic, .foreground = ThemeColor::secondary})
      .margins(0.0, em(1));
}

Theme makeStandard() {
  return {
      .text = {.size = bodySize, .foreground = ThemeColor::primary},
      .code = {.familyVariant = FontProperties::FamilyVariant::monospaced,
               .size = em(0.94),
               .foreground = ThemeColor::code,
               .background = ThemeColor::ground},
      .emphasis = {.style = FontProperties::Style::italic},
      .strong = {.weight = FontProperties::Weight::semibold},
      .strikethrough = {.isStruckThrough = true},
      .link = {.foreground = ThemeColor::link, .isUnderlined = true},
      .headings = headings(),
      .paragraph = paragraph,
      .blockquote = blockquote,
      .codeBlock = codeBlock,
      .image = image,
      .list = [](auto const& list) { return list.label.margins(0.0, em(1)).padded(rem(1), 0.0); },
      .listItem = [](auto const& item) { return item.label.spaced(lineSpacing); },
      .taskListMarker = taskListMarker,
      .bulletedListMarker = bulletedListMarker,
      .numberedListMarker = numberedListMarker,
      .table = table,
      .tableCell = tableCell,
      .thematicBreak = thematicBreak,
  };
}

}  // namespace

Theme const& Theme::standard() {
  static auto const& theme = *new Theme(makeStandard());
  return theme;
}

}  // namespace vek
