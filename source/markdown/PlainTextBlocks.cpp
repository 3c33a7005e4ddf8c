// SPDX-License-Identifier: MIT
#include "markdown/PlainTextBlocks.hpp"

#include <algorithm>

#include "markdown/Theme.hpp"

namespace vek {

std::vector<DrawnBlock> plainTextBlocks(std::string_view text) {
  auto const attributes = Theme::standard().text.appliedTo({});
  auto const drawable = Drawable{.text = attributes}.spaced(RelativeSize::em(0.25));
  // More than between the lines of a long one, or nobody sees where the next begins.
  auto const gap = attributes.font.points(RelativeSize::em(0.6));
  std::vector<DrawnBlock> blocks;
  while (!text.empty()) {
    auto const line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    blocks.push_back({.content = DrawnBlock::Text{{{std::string(line), attributes}}},
                      .drawable = drawable,
                      .gapAbove = blocks.empty() ? 0 : gap});
  }
  return blocks;
}

}  // namespace vek
