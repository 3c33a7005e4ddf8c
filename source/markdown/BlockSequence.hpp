// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "markdown/DrawnBlock.hpp"
#include "markdown/MarkdownContent.hpp"
#include "markdown/MarkdownEnvironment.hpp"

namespace vek {

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
    /// How they are drawn without a style of their own.
    Drawable label = {};
    double leading = 0;
    double trailing = 0;
    DrawnBlock::Frames frame = {};
    int listLevel = 0;
    bool tightSpacingEnabled = false;
  };
  /// Children that are being walked, and the margins around them.
  struct Open {
    Children<BlockNode> children;
    Place place = {};
    std::optional<DrawnBlock::Marker> marker = {};
    BlockMargin margin = {};
    /// Whether the frame of the place ends with them.
    bool endsFrame = false;
    std::size_t next = 0;
  };

  explicit BlockSequence(MarkdownEnvironment const& environment) : environment_(environment) {}

  void walk(Open open);
  void begin(Open& open);
  void end(Open const& open);
  void add(BlockNode const& block, Place const& in);
  void addText(Drawable drawable, DrawnBlock::Text text, Place const& in);
  [[nodiscard]] std::vector<InlineRun> runsOf(Children<InlineNode> const& content,
                                              TextAttributes const& attributes) const;
  void addLine(Drawable drawable, Children<InlineNode> const& content, int level, Place const& in);
  void addParagraph(BlockNode::paragraph const& paragraph, Place const& in);
  void addCode(BlockNode::codeBlock const& code, Place const& in);
  void addTable(BlockNode::table const& table, Place const& in);
  void addHTML(BlockNode::htmlBlock const& html, Place const& in);
  void addQuote(BlockNode::blockquote const& quote, Place const& in);
  /// `marker` makes that of an item, by its position and the label it is drawn with.
  template <class Item, class Marker>
  void addList(BlockNode const& list, Children<Item> const& items, bool isTight, Place const& in,
               Marker marker);
  void put(DrawnBlock block, Place const& in);
  [[nodiscard]] static BlockConfiguration configuration(BlockNode const& block, Place const& in);
  /// The place inside a frame that is drawn so.
  [[nodiscard]] static Place within(DrawnBlock::Frame::Kind kind, Drawable const& drawable,
                                    Place const& in);

  MarkdownEnvironment const& environment_;
  std::vector<DrawnBlock> blocks_;
  std::vector<Open> open_;
  std::vector<DrawnBlock::Marker> waitingMarkers_;
  double gap_ = 0;
};

}  // namespace vek
