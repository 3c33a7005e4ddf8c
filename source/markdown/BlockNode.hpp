// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "markdown/InlineNode.hpp"
#include "markdown/RawListItem.hpp"
#include "markdown/RawTableColumnAlignment.hpp"
#include "markdown/RawTableRow.hpp"
#include "markdown/RawTaskListItem.hpp"

namespace vek {

struct BlockNodeCases {
  struct blockquote {
    Children<BlockNode> children;
    bool operator==(blockquote const&) const = default;
  };
  struct bulletedList {
    bool isTight = false;
    Children<RawListItem> items;
    bool operator==(bulletedList const&) const = default;
  };
  struct numberedList {
    bool isTight = false;
    int start = 1;
    Children<RawListItem> items;
    bool operator==(numberedList const&) const = default;
  };
  struct taskList {
    bool isTight = false;
    Children<RawTaskListItem> items;
    bool operator==(taskList const&) const = default;
  };
  struct codeBlock {
    std::optional<std::string> fenceInfo;
    std::string content;
    bool operator==(codeBlock const&) const = default;
  };
  struct htmlBlock {
    std::string content;
    bool operator==(htmlBlock const&) const = default;
  };
  struct paragraph {
    Children<InlineNode> content;
    bool operator==(paragraph const&) const = default;
  };
  struct heading {
    int level = 1;
    Children<InlineNode> content;
    bool operator==(heading const&) const = default;
  };
  struct table {
    std::vector<RawTableColumnAlignment> columnAlignments;
    Children<RawTableRow> rows;
    bool operator==(table const&) const = default;
  };
  struct thematicBreak {
    bool operator==(thematicBreak const&) const = default;
  };
};

/// What stands below one another in a document.
struct BlockNode
    : BlockNodeCases,
      Sum<BlockNodeCases::blockquote, BlockNodeCases::bulletedList, BlockNodeCases::numberedList,
          BlockNodeCases::taskList, BlockNodeCases::codeBlock, BlockNodeCases::htmlBlock,
          BlockNodeCases::paragraph, BlockNodeCases::heading, BlockNodeCases::table,
          BlockNodeCases::thematicBreak> {
  using Sum::Sum;
};

}  // namespace vek
