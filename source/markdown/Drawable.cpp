// SPDX-License-Identifier: MIT
#include "markdown/Drawable.hpp"

namespace vek {

Drawable Drawable::styled(TextStyle const& style) const {
  auto drawable = *this;
  drawable.text = style.appliedTo(text);
  return drawable;
}

Drawable Drawable::spaced(FontSize const& betweenLines) const {
  auto drawable = *this;
  drawable.lineSpacing = text.font.points(betweenLines);
  return drawable;
}

Drawable Drawable::margins(FontSize const& top, FontSize const& bottom) const {
  auto drawable = *this;
  drawable.margin = {.top = text.font.points(top), .bottom = text.font.points(bottom)};
  return drawable;
}

Drawable Drawable::padded(FontSize const& leading, FontSize const& trailing, FontSize const& top,
                          FontSize const& bottom) const {
  auto drawable = *this;
  drawable.padding = {.leading = text.font.points(leading),
                      .trailing = text.font.points(trailing),
                      .top = text.font.points(top),
                      .bottom = text.font.points(bottom)};
  return drawable;
}

}  // namespace vek
