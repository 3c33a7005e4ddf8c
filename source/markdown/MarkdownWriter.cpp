// SPDX-License-Identifier: MIT
#include "markdown/MarkdownWriter.hpp"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm-extension_api.h>
#include <cmark-gfm.h>

#include <cstdint>
#include <string>

#include "runtime/Match.hpp"

// The extensions number their kinds of node when they are registered.
extern "C" cmark_node_type CMARK_NODE_STRIKETHROUGH, CMARK_NODE_TABLE, CMARK_NODE_TABLE_ROW,
    CMARK_NODE_TABLE_CELL;

namespace vek {

namespace {

cmark_node* made(cmark_node_type type, char const* extension) {
  return cmark_node_new_with_ext(type, cmark_find_syntax_extension(extension));
}

/// Made without its extension, which would give a cell memory that it never takes back.
cmark_node* madeCell() {
  auto* node = cmark_node_new(CMARK_NODE_TABLE_CELL);
  cmark_node_set_syntax_extension(node, cmark_find_syntax_extension("table"));
  return node;
}

cmark_node* madeLiteral(cmark_node_type type, std::string const& content) {
  auto* node = cmark_node_new(type);
  cmark_node_set_literal(node, content.c_str());
  return node;
}

cmark_node* madeReference(cmark_node_type type, std::string const& url) {
  auto* node = cmark_node_new(type);
  cmark_node_set_url(node, url.c_str());
  return node;
}

cmark_node* madeCodeBlock(BlockNode::codeBlock const& block) {
  auto* node = madeLiteral(CMARK_NODE_CODE_BLOCK, block.content);
  if (block.fenceInfo) cmark_node_set_fence_info(node, block.fenceInfo->c_str());
  return node;
}

cmark_node* madeHeading(int level) {
  auto* node = cmark_node_new(CMARK_NODE_HEADING);
  cmark_node_set_heading_level(node, level);
  return node;
}

cmark_node* madeList(cmark_list_type type, bool isTight) {
  auto* node = cmark_node_new(CMARK_NODE_LIST);
  cmark_node_set_list_type(node, type);
  cmark_node_set_list_tight(node, isTight ? 1 : 0);
  return node;
}

cmark_node* madeNumberedList(BlockNode::numberedList const& list) {
  auto* node = madeList(CMARK_ORDERED_LIST, list.isTight);
  cmark_node_set_list_delim(node, CMARK_PERIOD_DELIM);
  cmark_node_set_list_start(node, list.start);
  return node;
}

std::uint8_t letter(RawTableColumnAlignment alignment) {
  switch (alignment) {
    case RawTableColumnAlignment::left:
      return 'l';
    case RawTableColumnAlignment::center:
      return 'c';
    case RawTableColumnAlignment::right:
      return 'r';
    case RawTableColumnAlignment::none:
      break;
  }
  return 0;
}

cmark_node* madeTable(std::vector<RawTableColumnAlignment> const& alignments) {
  auto* node = made(CMARK_NODE_TABLE, "table");
  std::vector<std::uint8_t> letters;
  letters.reserve(alignments.size());
  for (auto alignment : alignments) letters.push_back(letter(alignment));
  auto const columns = static_cast<std::uint16_t>(letters.size());
  cmark_gfm_extensions_set_table_columns(node, columns);
  cmark_gfm_extensions_set_table_alignments(node, columns, letters.data());
  return node;
}

}  // namespace

cmark_node* MarkdownWriter::write(MarkdownContent const& content) {
  MarkdownWriter writer;
  auto* document = cmark_node_new(CMARK_NODE_DOCUMENT);
  writer.waiting_.push_back({.parent = document, .blocks = &content.blocks});
  while (!writer.waiting_.empty()) {
    auto const next = writer.waiting_.back();
    writer.waiting_.pop_back();
    writer.writeChildren(next);
  }
  writer.join();
  return document;
}

void MarkdownWriter::writeChildren(Waiting const& waiting) {
  if (waiting.blocks)
    for (auto const& block : *waiting.blocks) writeBlock(waiting.parent, block);
  if (waiting.inlines)
    for (auto const& node : *waiting.inlines) writeInline(waiting.parent, node);
}

void MarkdownWriter::writeBlock(cmark_node* parent, BlockNode const& block) {
  auto const lines = [&](cmark_node* node, Children<InlineNode> const& content) {
    waiting_.push_back({.parent = joined(parent, node), .inlines = &content});
  };
  match(
      block,
      [&](BlockNode::blockquote const& quote) {
        waiting_.push_back({.parent = joined(parent, cmark_node_new(CMARK_NODE_BLOCK_QUOTE)),
                            .blocks = &quote.children});
      },
      [&](BlockNode::bulletedList const& list) {
        writeList(joined(parent, madeList(CMARK_BULLET_LIST, list.isTight)), list.items);
      },
      [&](BlockNode::numberedList const& list) {
        writeList(joined(parent, madeNumberedList(list)), list.items);
      },
      [&](BlockNode::taskList const& list) {
        writeList(joined(parent, madeList(CMARK_BULLET_LIST, list.isTight)), list.items);
      },
      [&](BlockNode::codeBlock const& code) { joined(parent, madeCodeBlock(code)); },
      [&](BlockNode::htmlBlock const& html) {
        joined(parent, madeLiteral(CMARK_NODE_HTML_BLOCK, html.content));
      },
      [&](BlockNode::paragraph const& paragraph) {
        lines(cmark_node_new(CMARK_NODE_PARAGRAPH), paragraph.content);
      },
      [&](BlockNode::heading const& heading) {
        lines(madeHeading(heading.level), heading.content);
      },
      [&](BlockNode::table const& table) { writeTable(parent, table); },
      [&](BlockNode::thematicBreak) { joined(parent, cmark_node_new(CMARK_NODE_THEMATIC_BREAK)); });
}

template <class Items>
void MarkdownWriter::writeList(cmark_node* list, Items const& items) {
  for (auto const& item : items)
    waiting_.push_back({.parent = itemOf(list, item), .blocks = &item.children});
}

cmark_node* MarkdownWriter::itemOf(cmark_node* list, RawListItem const& /*item*/) {
  return joined(list, cmark_node_new(CMARK_NODE_ITEM));
}

cmark_node* MarkdownWriter::itemOf(cmark_node* list, RawTaskListItem const& item) {
  auto* node = made(CMARK_NODE_ITEM, "tasklist");
  cmark_gfm_extensions_set_tasklist_item_checked(node, item.isCompleted);
  return joined(list, node);
}

void MarkdownWriter::writeTable(cmark_node* parent, BlockNode::table const& table) {
  auto* grid = joined(parent, madeTable(table.columnAlignments));
  bool isHeader = true;
  for (auto const& row : table.rows) {
    auto* line = joined(grid, made(CMARK_NODE_TABLE_ROW, "table"));
    cmark_gfm_extensions_set_table_row_is_header(line, isHeader ? 1 : 0);
    isHeader = false;
    for (auto const& cell : row.cells) {
      waiting_.push_back({.parent = joined(line, madeCell()), .inlines = &cell.content});
    }
  }
}

void MarkdownWriter::writeInline(cmark_node* parent, InlineNode const& node) {
  auto const nested = [&](cmark_node* outer, Children<InlineNode> const& children) {
    waiting_.push_back({.parent = joined(parent, outer), .inlines = &children});
  };
  auto const literal = [&](cmark_node_type type, std::string const& content) {
    joined(parent, madeLiteral(type, content));
  };
  match(
      node, [&](InlineNode::text const& text) { literal(CMARK_NODE_TEXT, text.content); },
      [&](InlineNode::softBreak) { joined(parent, cmark_node_new(CMARK_NODE_SOFTBREAK)); },
      [&](InlineNode::lineBreak) { joined(parent, cmark_node_new(CMARK_NODE_LINEBREAK)); },
      [&](InlineNode::code const& code) { literal(CMARK_NODE_CODE, code.content); },
      [&](InlineNode::html const& html) { literal(CMARK_NODE_HTML_INLINE, html.content); },
      [&](InlineNode::emphasis const& emphasis) {
        nested(cmark_node_new(CMARK_NODE_EMPH), emphasis.children);
      },
      [&](InlineNode::strong const& strong) {
        nested(cmark_node_new(CMARK_NODE_STRONG), strong.children);
      },
      [&](InlineNode::strikethrough const& struck) {
        nested(made(CMARK_NODE_STRIKETHROUGH, "strikethrough"), struck.children);
      },
      [&](InlineNode::link const& link) {
        nested(madeReference(CMARK_NODE_LINK, link.destination), link.children);
      },
      [&](InlineNode::image const& image) {
        nested(madeReference(CMARK_NODE_IMAGE, image.source), image.children);
      });
}

cmark_node* MarkdownWriter::joined(cmark_node* parent, cmark_node* child) {
  joints_.emplace_back(parent, child);
  return child;
}

void MarkdownWriter::join() {
  for (auto joint = joints_.rbegin(); joint != joints_.rend(); ++joint) {
    auto const& [parent, child] = *joint;
    if (!cmark_node_prepend_child(parent, child)) cmark_node_free(child);
  }
}

}  // namespace vek
