// SPDX-License-Identifier: MIT
#include "markdown/BlockSequence.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include "runtime/Match.hpp"

namespace vek {

namespace {

/// Blocks that nest deeper than this stand where their parent does.
constexpr double deepest = 240;
/// Between a marker and what it marks.
constexpr auto markerGap = RelativeSize::em(0.5);
/// Below a paragraph of a tight list.
constexpr auto tightGap = RelativeSize::em(0.4);

std::string_view withoutLastBreak(std::string_view text) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  return text;
}

}  // namespace

std::vector<DrawnBlock> BlockSequence::of(MarkdownContent const& content,
                                          MarkdownEnvironment const& environment) {
  BlockSequence sequence(environment);
  sequence.walk(
      {.children = content.blocks, .place = {.text = environment.theme.text.appliedTo({})}});
  return std::move(sequence.blocks_);
}

void BlockSequence::walk(Open open) {
  open_.push_back(std::move(open));
  while (!open_.empty()) {
    auto& top = open_.back();
    if (top.next == 0) begin(top);
    if (top.next < top.children.size()) {
      auto const children = top.children;
      auto const place = top.place;
      add(children[top.next++], place);
    } else {
      end(top);
      open_.pop_back();
    }
  }
}

void BlockSequence::begin(Open& open) {
  if (open.marker) waitingMarkers_.push_back(*std::exchange(open.marker, std::nullopt));
}

void BlockSequence::end(Open const& open) {
  bool const isEmptyItem = !waitingMarkers_.empty() && open.children.empty();
  if (isEmptyItem) addText({.text = open.place.text}, {}, open.place);
  gap_ = std::max(gap_, open.bottom);
}

BlockConfiguration BlockSequence::configuration(BlockNode const& block, Place const& in) const {
  return {.label = {.text = in.text}, .content = MarkdownContent({block})};
}

void BlockSequence::add(BlockNode const& block, Place const& in) {
  auto const& theme = environment_.theme;
  match(
      block, [&](BlockNode::blockquote const& quote) { addQuote(quote, in); },
      [&](BlockNode::bulletedList const& list) {
        std::vector<Item> items;
        for (int number = 1; auto const& item : list.items)
          items.push_back({item.children, itemMarker(theme.bulletedListMarker, number++, in)});
        addList(block, std::move(items), list.isTight, in);
      },
      [&](BlockNode::numberedList const& list) {
        std::vector<Item> items;
        for (int number = list.start; auto const& item : list.items)
          items.push_back({item.children, itemMarker(theme.numberedListMarker, number++, in)});
        addList(block, std::move(items), list.isTight, in);
      },
      [&](BlockNode::taskList const& list) {
        std::vector<Item> items;
        for (auto const& item : list.items) {
          items.push_back({item.children, theme.taskListMarker({.isCompleted = item.isCompleted,
                                                                .label = {.text = in.text}})});
        }
        addList(block, std::move(items), list.isTight, in);
      },
      [&](BlockNode::codeBlock const& code) { addCode(code, in); },
      [&](BlockNode::htmlBlock const& html) { addHTML(html, in); },
      [&](BlockNode::paragraph const& paragraph) { addParagraph(paragraph, in); },
      [&](BlockNode::heading const& heading) {
        auto const level = std::clamp(heading.level, 1, static_cast<int>(theme.headings.size()));
        addLine(theme.headings[static_cast<std::size_t>(level) - 1](configuration(block, in)),
                heading.content, level, in);
      },
      [&](BlockNode::table const& table) { addTable(table, in); },
      [&](BlockNode::thematicBreak) {
        put({.content = DrawnBlock::Rule{},
             .drawable = theme.thematicBreak(configuration(block, in))},
            in);
      });
}

void BlockSequence::addQuote(BlockNode::blockquote const& quote, Place const& in) {
  auto const drawable = environment_.theme.blockquote(configuration(quote, in));
  auto place = in;
  place.text = drawable.text;
  place.tightSpacingEnabled = false;
  if (place.leading < deepest) {
    if (drawable.leadingBar)
      place.bars.push_back({.quote = quotes_++, .left = in.leading, .color = *drawable.leadingBar});
    place.leading += drawable.padding.leading;
    place.trailing += drawable.padding.trailing;
  }
  gap_ = std::max(gap_, drawable.margin.top.value_or(0));
  open_.push_back({.children = quote.children,
                   .place = std::move(place),
                   .bottom = drawable.margin.bottom.value_or(0)});
}

Drawable BlockSequence::itemMarker(BlockStyle<ListMarkerConfiguration> const& style, int number,
                                   Place const& in) const {
  return style({.listLevel = in.listLevel + 1, .itemNumber = number, .label = {.text = in.text}});
}

void BlockSequence::addList(BlockNode const& list, std::vector<Item> items, bool isTight,
                            Place const& in) {
  auto const drawable = environment_.theme.list(configuration(list, in));
  double width = 0;
  for (auto const& item : items) {
    width = std::max({width, item.marker.minimumWidth, environment_.markerWidth(item.marker)});
  }
  auto place = in;
  auto const left = in.leading + drawable.padding.leading;
  place.listLevel = in.listLevel + 1;
  place.tightSpacingEnabled = isTight;
  place.text = environment_.theme.listItem(configuration(list, in)).text;
  bool const isSeen = in.leading < deepest;
  if (isSeen) place.leading = left + width + in.text.font.points(markerGap);

  // Ends the list, after its items, which are walked from the top of the stack.
  auto const bottom = in.tightSpacingEnabled ? 0 : drawable.margin.bottom.value_or(0);
  open_.push_back({.children = {}, .place = in, .bottom = bottom});
  gap_ = std::max(gap_, drawable.margin.top.value_or(0));
  for (auto item = items.rbegin(); item != items.rend(); ++item) {
    Open open{.children = std::move(item->children), .place = place};
    if (isSeen) open.marker = {.drawable = item->marker, .left = left, .width = width};
    open_.push_back(std::move(open));
  }
}

void BlockSequence::addLine(Drawable drawable, Children<InlineNode> const& content, int level,
                            Place const& in) {
  auto runs = inlineRuns(content, environment_.theme, drawable.text, environment_.softBreak);
  addText(std::move(drawable), {.runs = std::move(runs), .headingLevel = level}, in);
}

void BlockSequence::addText(Drawable drawable, DrawnBlock::Text text, Place const& in) {
  put({.content = std::move(text), .drawable = std::move(drawable)}, in);
}

void BlockSequence::addParagraph(BlockNode::paragraph const& paragraph, Place const& in) {
  auto const& theme = environment_.theme;
  if (auto flow = imageFlow(paragraph.content)) {
    put({.content = *std::move(flow), .drawable = theme.image(configuration(paragraph, in))}, in);
    return;
  }
  auto drawable = theme.paragraph(configuration(paragraph, in));
  if (in.tightSpacingEnabled) drawable = drawable.margins(0.0, tightGap);
  addLine(std::move(drawable), paragraph.content, 0, in);
}

void BlockSequence::addCode(BlockNode::codeBlock const& code, Place const& in) {
  auto const info = code.fenceInfo.value_or("");
  CodeBlockConfiguration const configuration{.language = info.substr(0, info.find(' ')),
                                             .content = code.content,
                                             .label = {.text = in.text}};
  auto drawable = environment_.theme.codeBlock(configuration);
  auto runs = environment_.highlight(std::string(withoutLastBreak(code.content)),
                                     configuration.language, drawable.text);
  addText(std::move(drawable), {.runs = std::move(runs)}, in);
}

void BlockSequence::addHTML(BlockNode::htmlBlock const& html, Place const& in) {
  auto drawable = environment_.theme.paragraph(configuration(html, in));
  Children<InlineNode> const content = {
      InlineNode::html{std::string(withoutLastBreak(html.content))}};
  addLine(std::move(drawable), content, 0, in);
}

void BlockSequence::addTable(BlockNode::table const& table, Place const& in) {
  auto const& theme = environment_.theme;
  DrawnBlock::Grid grid{.columnAlignments = table.columnAlignments, .rows = {}};
  for (auto const& row : table.rows) {
    auto& cells = grid.rows.emplace_back();
    for (auto const& cell : row.cells) {
      auto drawable = theme.tableCell(
          {.row = grid.rows.size() - 1, .column = cells.size(), .label = {.text = in.text}});
      auto runs = inlineRuns(cell.content, theme, drawable.text, environment_.softBreak);
      cells.push_back({std::move(drawable), std::move(runs)});
    }
  }
  put({.content = std::move(grid), .drawable = theme.table(configuration(table, in))}, in);
}

void BlockSequence::put(DrawnBlock block, Place const& in) {
  block.gapAbove = blocks_.empty() ? 0 : std::max(gap_, block.drawable.margin.top.value_or(0));
  gap_ = block.drawable.margin.bottom.value_or(0);
  block.leading = in.leading;
  block.trailing = in.trailing;
  block.bars = in.bars;
  block.markers = std::exchange(waitingMarkers_, {});
  blocks_.push_back(std::move(block));
}

}  // namespace vek
