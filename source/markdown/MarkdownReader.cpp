// SPDX-License-Identifier: MIT
#include "markdown/MarkdownReader.hpp"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vek {

namespace {

std::string orEmpty(char const* text) {
  return text ? text : "";
}

std::string literal(cmark_node& node) {
  return orEmpty(cmark_node_get_literal(&node));
}

bool isOf(cmark_node& node, std::string_view typeName) {
  return cmark_node_get_type_string(&node) == typeName;
}

bool isBlock(cmark_node& node) {
  return (cmark_node_get_type(&node) & CMARK_NODE_TYPE_MASK) == CMARK_NODE_TYPE_BLOCK;
}

template <class Node>
Children<Node> take(std::vector<Node>& stack, std::size_t begin) {
  auto const first = stack.begin() + static_cast<std::ptrdiff_t>(begin);
  std::vector<Node> taken(std::make_move_iterator(first), std::make_move_iterator(stack.end()));
  stack.erase(first, stack.end());
  return taken;
}

BlockNode::codeBlock codeBlock(cmark_node& node) {
  auto info = orEmpty(cmark_node_get_fence_info(&node));
  return {.fenceInfo = info.empty() ? std::nullopt : std::optional(std::move(info)),
          .content = literal(node)};
}

std::vector<RawTableColumnAlignment> columnAlignments(cmark_node& table) {
  std::vector<RawTableColumnAlignment> alignments;
  auto const* letters = cmark_gfm_extensions_get_table_alignments(&table);
  auto const columns = cmark_gfm_extensions_get_table_columns(&table);
  alignments.reserve(static_cast<std::size_t>(columns));
  for (int i = 0; i < columns; ++i) {
    using enum RawTableColumnAlignment;
    alignments.push_back(letters[i] == 'l'   ? left
                         : letters[i] == 'c' ? center
                         : letters[i] == 'r' ? right
                                             : none);
  }
  return alignments;
}

}  // namespace

MarkdownContent MarkdownReader::read(cmark_node& document) {
  MarkdownReader reader;
  auto* node = cmark_node_first_child(&document);
  while (node) {
    if (!reader.takeLeaf(*node)) {
      reader.enter();
      if (auto* child = cmark_node_first_child(node)) {
        node = child;
        continue;
      }
      reader.leave(*node);
    }
    auto* next = cmark_node_next(node);
    while (!next && (node = cmark_node_parent(node)) != &document) {
      reader.leave(*node);
      next = cmark_node_next(node);
    }
    node = next;
  }
  return MarkdownContent(take(reader.blocks_, 0));
}

void MarkdownReader::enter() {
  begins_.push_back({blocks_.size(), inlines_.size(), items_.size(), rows_.size(), cells_.size()});
}

bool MarkdownReader::takeLeaf(cmark_node& node) {
  switch (cmark_node_get_type(&node)) {
    case CMARK_NODE_CODE_BLOCK:
      blocks_.emplace_back(codeBlock(node));
      break;
    case CMARK_NODE_HTML_BLOCK:
      blocks_.emplace_back(BlockNode::htmlBlock{literal(node)});
      break;
    case CMARK_NODE_THEMATIC_BREAK:
      blocks_.emplace_back(BlockNode::thematicBreak{});
      break;
    case CMARK_NODE_SOFTBREAK:
      inlines_.emplace_back(InlineNode::softBreak{});
      break;
    case CMARK_NODE_LINEBREAK:
      inlines_.emplace_back(InlineNode::lineBreak{});
      break;
    case CMARK_NODE_CODE:
      inlines_.emplace_back(InlineNode::code{literal(node)});
      break;
    case CMARK_NODE_HTML_INLINE:
      inlines_.emplace_back(InlineNode::html{literal(node)});
      break;
    case CMARK_NODE_TEXT:
      inlines_.emplace_back(InlineNode::text{literal(node)});
      break;
    default:
      return false;
  }
  return true;
}

void MarkdownReader::leave(cmark_node& node) {
  auto const begin = begins_.back();
  begins_.pop_back();
  bool const isKnown = isBlock(node) ? leaveBlock(node, begin) : leaveInline(node, begin);
  if (!isKnown) leaveUnknown(node, begin);
}

bool MarkdownReader::leaveBlock(cmark_node& node, Begin const& begin) {
  switch (cmark_node_get_type(&node)) {
    case CMARK_NODE_PARAGRAPH:
      blocks_.emplace_back(BlockNode::paragraph{take(inlines_, begin.inlines)});
      return true;
    case CMARK_NODE_HEADING:
      blocks_.emplace_back(BlockNode::heading{.level = cmark_node_get_heading_level(&node),
                                              .content = take(inlines_, begin.inlines)});
      return true;
    case CMARK_NODE_BLOCK_QUOTE:
      blocks_.emplace_back(BlockNode::blockquote{take(blocks_, begin.blocks)});
      return true;
    case CMARK_NODE_LIST:
      blocks_.push_back(list(node, begin.items));
      return true;
    case CMARK_NODE_ITEM:
      items_.push_back({.isTask = isOf(node, "tasklist"),
                        .item = {cmark_gfm_extensions_get_tasklist_item_checked(&node),
                                 take(blocks_, begin.blocks)}});
      return true;
    default:
      break;
  }
  if (isOf(node, "table_cell")) {
    cells_.push_back({take(inlines_, begin.inlines)});
  } else if (isOf(node, "table_row") || isOf(node, "table_header")) {
    rows_.push_back({take(cells_, begin.cells)});
  } else if (isOf(node, "table")) {
    blocks_.emplace_back(BlockNode::table{columnAlignments(node), take(rows_, begin.rows)});
  } else {
    return false;
  }
  return true;
}

bool MarkdownReader::leaveInline(cmark_node& node, Begin const& begin) {
  auto const children = [&] { return take(inlines_, begin.inlines); };
  auto const url = [&] { return orEmpty(cmark_node_get_url(&node)); };
  switch (cmark_node_get_type(&node)) {
    case CMARK_NODE_EMPH:
      inlines_.emplace_back(InlineNode::emphasis{children()});
      return true;
    case CMARK_NODE_STRONG:
      inlines_.emplace_back(InlineNode::strong{children()});
      return true;
    case CMARK_NODE_LINK:
      inlines_.emplace_back(InlineNode::link{url(), children()});
      return true;
    case CMARK_NODE_IMAGE:
      inlines_.emplace_back(InlineNode::image{url(), children()});
      return true;
    default:
      break;
  }
  if (!isOf(node, "strikethrough")) return false;
  inlines_.emplace_back(InlineNode::strikethrough{children()});
  return true;
}

void MarkdownReader::leaveUnknown(cmark_node& node, Begin const& begin) {
  if (auto text = literal(node); !text.empty())
    inlines_.emplace_back(InlineNode::text{std::move(text)});
  bool const isLine = isBlock(node) && inlines_.size() > begin.inlines;
  if (isLine) blocks_.emplace_back(BlockNode::paragraph{take(inlines_, begin.inlines)});
}

BlockNode MarkdownReader::list(cmark_node& node, std::size_t begin) {
  bool const isTight = cmark_node_get_list_tight(&node) != 0;
  if (cmark_node_get_list_type(&node) == CMARK_ORDERED_LIST) {
    return BlockNode::numberedList{
        .isTight = isTight, .start = cmark_node_get_list_start(&node), .items = plainItems(begin)};
  }
  auto const first = items_.begin() + static_cast<std::ptrdiff_t>(begin);
  if (std::none_of(first, items_.end(), [](Item const& item) { return item.isTask; }))
    return BlockNode::bulletedList{.isTight = isTight, .items = plainItems(begin)};
  std::vector<RawTaskListItem> tasks;
  tasks.reserve(items_.size() - begin);
  std::for_each(first, items_.end(), [&](Item& item) { tasks.push_back(std::move(item.item)); });
  items_.erase(first, items_.end());
  return BlockNode::taskList{.isTight = isTight, .items = std::move(tasks)};
}

Children<RawListItem> MarkdownReader::plainItems(std::size_t begin) {
  auto const first = items_.begin() + static_cast<std::ptrdiff_t>(begin);
  std::vector<RawListItem> items;
  items.reserve(items_.size() - begin);
  std::for_each(first, items_.end(),
                [&](Item& item) { items.push_back({std::move(item.item.children)}); });
  items_.erase(first, items_.end());
  return items;
}

}  // namespace vek
