// SPDX-License-Identifier: MIT
#pragma once

#include <utility>
#include <vector>

#include "markdown/MarkdownContent.hpp"

struct cmark_node;

namespace vek {

/// Turns the tree into a document of cmark-gfm, whose owner is the caller. Nodes are made from the
/// root down and joined from the leaves up, since to join a node costs as much as its parent is
/// deep.
class MarkdownWriter {
 public:
  static cmark_node* write(MarkdownContent const& content);

 private:
  /// Children that are still to be made.
  struct Waiting {
    cmark_node* parent = nullptr;
    Children<BlockNode> const* blocks = nullptr;
    Children<InlineNode> const* inlines = nullptr;
  };

  void writeChildren(Waiting const& waiting);
  void writeBlock(cmark_node* parent, BlockNode const& block);
  void writeInline(cmark_node* parent, InlineNode const& node);
  template <class Items>
  void writeList(cmark_node* list, Items const& items);
  cmark_node* itemOf(cmark_node* list, RawListItem const& item);
  cmark_node* itemOf(cmark_node* list, RawTaskListItem const& item);
  void writeTable(cmark_node* parent, BlockNode::table const& table);
  cmark_node* joined(cmark_node* parent, cmark_node* child);
  void join();

  std::vector<Waiting> waiting_;
  /// Parent and child, the children of a node in their order.
  std::vector<std::pair<cmark_node*, cmark_node*>> joints_;
};

}  // namespace vek
