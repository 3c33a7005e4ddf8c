// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "markdown/BlockMargin.hpp"
#include "markdown/TextStyle.hpp"

namespace vek {

/// How a block is drawn, as a value: a style takes the one that a block would have by itself and
/// gives it more. Lengths are in points and follow the font that the block has at that moment.
struct Drawable {
  struct Padding {
    double leading = 0, trailing = 0, top = 0, bottom = 0;
    bool operator==(Padding const&) const = default;
  };

  TextAttributes text = {};
  /// Between the lines of the text.
  double lineSpacing = 0;
  BlockMargin margin = {};
  Padding padding = {};
  std::optional<ThemeColor> background = {};
  std::optional<ThemeColor> border = {};
  std::optional<ThemeColor> leadingBar = {};
  /// Lines stay whole, and what is too wide moves sideways.
  bool isScrollable = false;
  /// What a marker shows: a text, or the symbol of that name.
  std::string label = {};
  std::string symbol = {};
  double minimumWidth = 0;

  [[nodiscard]] Drawable styled(TextStyle const& style) const;
  [[nodiscard]] Drawable spaced(FontSize const& betweenLines) const;
  [[nodiscard]] Drawable margins(FontSize const& top, FontSize const& bottom) const;
  [[nodiscard]] Drawable padded(FontSize const& leading, FontSize const& trailing,
                                FontSize const& top = 0.0, FontSize const& bottom = 0.0) const;

  bool operator==(Drawable const&) const = default;
};

}  // namespace vek
