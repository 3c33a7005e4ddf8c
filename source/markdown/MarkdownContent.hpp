// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <utility>

#include "markdown/BlockNode.hpp"

namespace vek {

/// A Markdown text as a tree of plain values, made once per text.
struct MarkdownContent {
  MarkdownContent() = default;
  /// Never fails: a text without blocks gives an empty list.
  explicit MarkdownContent(std::string_view text);
  explicit MarkdownContent(Children<BlockNode> list) : blocks(std::move(list)) {}

  Children<BlockNode> blocks;

  bool operator==(MarkdownContent const&) const = default;
};

}  // namespace vek
