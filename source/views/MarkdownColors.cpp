// SPDX-License-Identifier: MIT
#include "views/MarkdownColors.hpp"

namespace vek {

MarkdownColors MarkdownColors::from(QVariantMap const& colors) {
  auto const named = [&](char const* name) {
    return colors.value(QString::fromLatin1(name)).value<QColor>();
  };
  return {.primary = named("primary"),
          .secondary = named("secondary"),
          .link = named("link"),
          .code = named("code"),
          .ground = named("ground"),
          .border = named("border"),
          .quoteBar = named("quoteBar"),
          .done = named("done"),
          .selection = named("selection"),
          .found = named("found"),
          .foundNow = named("foundNow")};
}

QColor MarkdownColors::of(ThemeColor color) const {
  switch (color) {
    case ThemeColor::primary:
      return primary;
    case ThemeColor::secondary:
      return secondary;
    case ThemeColor::link:
      return link;
    case ThemeColor::code:
      return code;
    case ThemeColor::ground:
      return ground;
    case ThemeColor::border:
      return border;
    case ThemeColor::quoteBar:
      return quoteBar;
    case ThemeColor::done:
      return done;
  }
  return primary;
}

}  // namespace vek
