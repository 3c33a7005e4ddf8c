// SPDX-License-Identifier: MIT
#include "markdown/PlainTextBlocks.hpp"

#include <algorithm>

#include "markdown/Theme.hpp"

namespace vek {

namespace {

constexpr std::size_t longestBlock = 4000;

/// How much of a line is one block: all of it, or up to a blank, never a part of a character.
std::size_t blockLength(std::string_view line) {
  if (line.size() <= longestBlock) return line.size();
  auto const blank = line.rfind(' ', longestBlock);
  if (blank != std::string_view::npos && blank > 0) return blank + 1;
  auto end = longestBlock;
  while (end > 1 && (static_cast<unsigned char>(line[end]) & 0xC0U) == 0x80U) --end;
  return end;
}

}  // namespace

std::vector<DrawnBlock> plainTextBlocks(std::string_view text) {
  auto const attributes = Theme::standard().text.appliedTo({});
  auto const drawable = Drawable{.text = attributes}.spaced(RelativeSize::em(0.25));
  std::vector<DrawnBlock> blocks;
  while (!text.empty()) {
    auto line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    do {
      auto const part = line.substr(0, blockLength(line));
      blocks.push_back({.content = DrawnBlock::Text{{{std::string(part), attributes}}},
                        .drawable = drawable,
                        .gapAbove = blocks.empty() ? 0 : drawable.lineSpacing});
      line.remove_prefix(part.size());
    } while (!line.empty());
  }
  return blocks;
}

}  // namespace vek
