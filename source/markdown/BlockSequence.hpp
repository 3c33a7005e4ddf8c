// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "markdown/CodeSyntaxHighlighter.hpp"
#include "markdown/DrawnBlock.hpp"
#include "markdown/MarkdownContent.hpp"

namespace vek {

/// What a document is drawn with beside its content.
struct MarkdownEnvironment {
  Theme theme = Theme::standard();
  SoftBreak::Mode softBreak = SoftBreak::Mode::space;
  CodeSyntaxHighlighter highlight = plainTextHighlighter;
  /// How wide the label of a marker is, in points.
  std::function<double(Drawable const& marker)> markerWidth = [](Drawable const&) { return 0.0; };
};

/// Undoes the nesting of a document. Of the margins between two blocks, those of the blocks that
/// begin or end there included, the largest is the gap. Nests as deep as the text is long are
/// walked with a stack; beyond a depth that can be seen they move no further in.
class BlockSequence {
 public:
  static std::vector<DrawnBlock> of(MarkdownContent const& content,
                                    MarkdownEnvironment const& environment);

 private:
  /// What children get from the block around them.
  struct Place {
    TextAttributes text = {};
    double leading = 0;
    double trailing = 0;
    std::vector<DrawnBlock::Bar> bars = {};
    int listLevel = 0;
    bool tightSpacingEnabled = false;
  };
  /// Children that are being walked.
  struct Open {
    Children<BlockNode> children;
    std::size_t next = 0;
    Place place = {};
    std::optional<DrawnBlock::Marker> marker = {};
    double bottom = 0;
  };
  struct Item {
    Children<BlockNode> children;
    Drawable marker;
  };

  explicit BlockSequence(MarkdownEnvironment const& environment) : environment_(environment) {}

  void walk(Open open);
  void begin(Open& open);
  void end(Open const& open);
  void add(BlockNode const& block, Place const& in);
  void addText(Drawable drawable, DrawnBlock::Text text, Place const& in);
  void addLine(Drawable drawable, Children<InlineNode> const& content, int level, Place const& in);
  void addParagraph(BlockNode::paragraph const& paragraph, Place const& in);
  void addCode(BlockNode::codeBlock const& code, Place const& in);
  void addTable(BlockNode::table const& table, Place const& in);
  void addHTML(BlockNode::htmlBlock const& html, Place const& in);
  void addQuote(BlockNode::blockquote const& quote, Place const& in);
  void addList(BlockNode const& list, std::vector<Item> items, bool isTight, Place const& in);
  [[nodiscard]] Drawable itemMarker(BlockStyle<ListMarkerConfiguration> const& style, int number,
                                    Place const& in) const;
  void put(DrawnBlock block, Place const& in);
  [[nodiscard]] BlockConfiguration configuration(BlockNode const& block, Place const& in) const;

  MarkdownEnvironment const& environment_;
  std::vector<DrawnBlock> blocks_;
  std::vector<Open> open_;
  std::vector<DrawnBlock::Marker> waitingMarkers_;
  double gap_ = 0;
  std::size_t quotes_ = 0;
};

}  // namespace vek
