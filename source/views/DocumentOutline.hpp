// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "markdown/DrawnBlock.hpp"
#include "views/DocumentLayout.hpp"

namespace vek {

/// The blocks of a document as they nest, with their cells and links: how it is read to those who
/// do not see it.
class DocumentOutline {
 public:
  struct Node {
    enum class Kind {
      document,
      quote,
      list,
      item,
      heading,
      paragraph,
      code,
      table,
      cell,
      image,
      link,
      rule
    };

    Kind kind = Kind::document;
    std::size_t parent = 0;
    /// Among the children of its parent.
    std::size_t position = 0;
    std::vector<std::size_t> children = {};
    /// Its text in that of the document.
    qsizetype from = 0;
    qsizetype to = 0;
    /// Of a heading.
    int level = 0;
    /// Of a table, whose children are its cells, row by row.
    std::size_t columns = 0;
    /// What stands beside an item. A task is done or not.
    QString marker = {};
    std::optional<bool> isDone = {};
    std::optional<SharedText> destination = {};
  };

  explicit DocumentOutline(DocumentLayout const& document);

  /// The first one is the document.
  [[nodiscard]] std::vector<Node> const& nodes() const { return nodes_; }

 private:
  using Frame = DrawnBlock::Frame;

  std::size_t add(std::size_t parent, Node node);
  /// The node of the innermost frame of a block.
  std::size_t enterFrames(DrawnBlock const& block, qsizetype from);
  void addText(std::size_t parent, DrawnBlock const& block, DrawnBlock::Text const& text,
               qsizetype from);
  void addGrid(std::size_t parent, DrawnBlock::Grid const& grid, qsizetype from);
  void addImages(std::size_t parent, ImageFlow const& flow, qsizetype from);
  void addLinks(std::size_t parent, std::vector<InlineRun> const& runs, qsizetype from);

  std::vector<Node> nodes_ = {Node{}};
  /// Those around the present block, the outermost first.
  std::vector<std::pair<Frame const*, std::size_t>> open_;
};

}  // namespace vek
