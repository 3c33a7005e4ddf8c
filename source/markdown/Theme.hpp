// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "markdown/BlockStyle.hpp"

namespace vek {

/// The look of a document.
struct Theme {
  TextStyle text, code, emphasis, strong, strikethrough, link;

  /// By level.
  std::array<BlockStyle<BlockConfiguration>, 6> headings;
  BlockStyle<BlockConfiguration> paragraph;
  BlockStyle<BlockConfiguration> blockquote;
  BlockStyle<CodeBlockConfiguration> codeBlock;
  BlockStyle<BlockConfiguration> image;
  BlockStyle<BlockConfiguration> list;
  BlockStyle<BlockConfiguration> listItem;
  BlockStyle<TaskListMarkerConfiguration> taskListMarker;
  BlockStyle<ListMarkerConfiguration> bulletedListMarker;
  BlockStyle<ListMarkerConfiguration> numberedListMarker;
  BlockStyle<BlockConfiguration> table;
  BlockStyle<TableCellConfiguration> tableCell;
  BlockStyle<BlockConfiguration> thematicBreak;

  /// The one that draws every analysis.
  static Theme const& standard();
};

}  // namespace vek
