// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "markdown/InlineNode.hpp"
#include "markdown/RawImageData.hpp"
#include "markdown/SoftBreak.hpp"
#include "markdown/Theme.hpp"
#include "runtime/SharedText.hpp"

namespace vek {

/// A piece of a line that looks the same from its beginning to its end.
struct InlineRun {
  /// A line break is "\n". For an image, what stands in its place.
  std::string text;
  TextAttributes attributes;
  /// Where a press leads, as the text says it.
  std::optional<SharedText> destination = {};
  std::optional<RawImageData> image = {};

  bool operator==(InlineRun const&) const = default;
};

/// The pieces of a line, in order. The styles of nested nodes add up.
std::vector<InlineRun> inlineRuns(Children<InlineNode> const& content, Theme const& theme,
                                  TextAttributes const& attributes,
                                  SoftBreak::Mode softBreak = SoftBreak::Mode::space);

/// The texts of all nodes, one after the other.
std::string plainText(Children<InlineNode> const& content);

/// Images that follow one another and wrap like words.
using ImageFlow = std::vector<std::variant<RawImageData, InlineNode::lineBreak>>;

/// The images of a paragraph that holds nothing else; nothing for any other.
std::optional<ImageFlow> imageFlow(Children<InlineNode> const& content);

}  // namespace vek
