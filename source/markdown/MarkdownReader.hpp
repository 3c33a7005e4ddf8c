// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "markdown/MarkdownContent.hpp"

struct cmark_node;

namespace vek {

/// Turns a document of cmark-gfm into the tree. Nodes that are complete wait on a stack a kind
/// until their parent ends and takes them. A node of no known kind takes none, so that they become
/// those of its parent.
class MarkdownReader {
 public:
  static MarkdownContent read(cmark_node& document);

 private:
  struct Item {
    bool isTask = false;
    RawTaskListItem item;
  };
  /// How much waited on each stack when a node began.
  struct Begin {
    std::size_t blocks, inlines, items, rows, cells;
  };

  void enter();
  void leave(cmark_node& node);
  /// False for what has children.
  bool takeLeaf(cmark_node& node);
  bool leaveBlock(cmark_node& node, Begin const& begin);
  bool leaveInline(cmark_node& node, Begin const& begin);
  void leaveUnknown(cmark_node& node, Begin const& begin);
  [[nodiscard]] BlockNode list(cmark_node& node, std::size_t begin);
  [[nodiscard]] Children<RawListItem> plainItems(std::size_t begin);

  std::vector<Begin> begins_;
  std::vector<BlockNode> blocks_;
  std::vector<InlineNode> inlines_;
  std::vector<Item> items_;
  std::vector<RawTableRow> rows_;
  std::vector<RawTableCell> cells_;
};

}  // namespace vek
