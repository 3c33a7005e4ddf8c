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
constexpr int mostFrames = 48;
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
  Place const whole{.label = {.text = environment.theme.text.appliedTo({})}};
  sequence.walk({.children = content.blocks, .place = whole});
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
  if (open.marker) {
    // One that moves no further in stands where that of the item around it would.
    bool const isCovered =
        !waitingMarkers_.empty() && waitingMarkers_.back().left >= open.marker->left;
    if (isCovered) waitingMarkers_.pop_back();
    waitingMarkers_.push_back(*std::exchange(open.marker, std::nullopt));
  }
  gap_ = std::max(gap_, open.margin.top.value_or(0));
}

void BlockSequence::end(Open const& open) {
  bool const isEmptyItem = !waitingMarkers_.empty() && open.children.empty();
  if (isEmptyItem) addText(open.place.label, {}, open.place);
  auto const& frame = open.place.frame;
  bool const ends = open.endsFrame && !blocks_.empty() && blocks_.back().isIn(*frame);
  if (ends) blocks_.back().paddingBelow += frame->bottom;
  gap_ = std::max(gap_, open.margin.bottom.value_or(0));
}

BlockConfiguration BlockSequence::configuration(BlockNode const& block, Place const& in) {
  return {.label = in.label, .content = MarkdownContent({block})};
}

BlockSequence::Place BlockSequence::within(DrawnBlock::Frame::Kind kind, Drawable const& drawable,
                                           Place const& in) {
  auto place = in;
  place.label = {.text = drawable.text, .lineSpacing = drawable.lineSpacing};
  auto const depth = in.frame ? in.frame->depth + 1 : 1;
  if (in.leading >= deepest || depth > mostFrames) return place;
  place.leading += drawable.padding.leading;
  place.trailing += drawable.padding.trailing;
  place.frame = std::make_shared<DrawnBlock::Frame const>(
      DrawnBlock::Frame{.kind = kind,
                        .outer = in.frame,
                        .depth = depth,
                        .leading = in.leading,
                        .trailing = in.trailing,
                        .top = drawable.padding.top,
                        .bottom = drawable.padding.bottom,
                        .background = drawable.background,
                        .border = drawable.border,
                        .leadingBar = drawable.leadingBar});
  return place;
}

void BlockSequence::add(BlockNode const& block, Place const& in) {
  auto const& theme = environment_.theme;
  auto const listMarker = [&](BlockStyle<ListMarkerConfiguration> const& style, int first) {
    return [&style, first, level = in.listLevel + 1](std::size_t item, Drawable label) {
      auto const number = first + static_cast<int>(item);
      return style({.listLevel = level, .itemNumber = number, .label = std::move(label)});
    };
  };
  match(
      block, [&](BlockNode::blockquote const& quote) { addQuote(quote, in); },
      [&](BlockNode::bulletedList const& list) {
        addList(block, list.items, list.isTight, in, listMarker(theme.bulletedListMarker, 1));
      },
      [&](BlockNode::numberedList const& list) {
        addList(block, list.items, list.isTight, in,
                listMarker(theme.numberedListMarker, list.start));
      },
      [&](BlockNode::taskList const& list) {
        addList(block, list.items, list.isTight, in, [&](std::size_t item, Drawable label) {
          return theme.taskListMarker(
              {.isCompleted = list.items[item].isCompleted, .label = std::move(label)});
        });
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
  auto place = within(DrawnBlock::Frame::Kind::quote, drawable, in);
  place.tightSpacingEnabled = false;
  bool const isFramed = place.frame != in.frame;
  open_.push_back({.children = quote.children,
                   .place = std::move(place),
                   .margin = drawable.margin,
                   .endsFrame = isFramed});
}

template <class Item, class Marker>
void BlockSequence::addList(BlockNode const& list, Children<Item> const& items, bool isTight,
                            Place const& in, Marker marker) {
  auto const drawable = environment_.theme.list(configuration(list, in));
  auto place = within(DrawnBlock::Frame::Kind::list, drawable, in);
  bool const isFramed = place.frame != in.frame;
  place.listLevel = in.listLevel + 1;
  place.tightSpacingEnabled = isTight;
  std::vector<Drawable> markers;
  markers.reserve(items.size());
  double width = 0;
  for (std::size_t item = 0; item < items.size(); ++item) {
    auto const& last = markers.emplace_back(marker(item, place.label));
    width = std::max({width, last.minimumWidth, environment_.markerWidth(last)});
  }

  auto margin = drawable.margin;
  if (in.tightSpacingEnabled) margin.bottom = 0;
  gap_ = std::max(gap_, margin.top.value_or(0));
  // Ends the list, after its items, which are walked from the top of the stack.
  open_.push_back({.children = {},
                   .place = place,
                   .margin = {.top = {}, .bottom = margin.bottom},
                   .endsFrame = isFramed});
  for (auto item = items.size(); item-- > 0;) {
    auto const style = environment_.theme.listItem(
        {.label = place.label, .content = MarkdownContent(items[item].children)});
    auto inside = within(DrawnBlock::Frame::Kind::item, style, place);
    Open open{.children = items[item].children,
              .margin = style.margin,
              .endsFrame = inside.frame != place.frame};
    auto const room = width + style.text.font.points(markerGap);
    if (open.endsFrame) inside.leading += room;
    open.marker = {.drawable = std::move(markers[item]),
                   .left = std::max(0.0, inside.leading - room),
                   .width = width};
    open.place = std::move(inside);
    open_.push_back(std::move(open));
  }
}

std::vector<InlineRun> BlockSequence::runsOf(Children<InlineNode> const& content,
                                             TextAttributes const& attributes) const {
  auto runs = inlineRuns(content, environment_.theme, attributes, environment_.softBreakMode);
  std::erase_if(runs, [this](InlineRun const& run) {
    return run.image && !run.image->isFor(environment_.colorScheme);
  });
  return runs;
}

void BlockSequence::addLine(Drawable drawable, Children<InlineNode> const& content, int level,
                            Place const& in) {
  auto runs = runsOf(content, drawable.text);
  addText(std::move(drawable), {.runs = std::move(runs), .headingLevel = level}, in);
}

void BlockSequence::addText(Drawable drawable, DrawnBlock::Text text, Place const& in) {
  put({.content = std::move(text), .drawable = std::move(drawable)}, in);
}

void BlockSequence::addParagraph(BlockNode::paragraph const& paragraph, Place const& in) {
  auto const& theme = environment_.theme;
  if (auto flow = imageFlow(paragraph.content)) {
    std::erase_if(*flow, [this](auto const& item) {
      auto const* image = std::get_if<RawImageData>(&item);
      return image && !image->isFor(environment_.colorScheme);
    });
    if (flow->empty() && waitingMarkers_.empty()) return;
    put({.content = *std::move(flow), .drawable = theme.image(configuration(paragraph, in))}, in);
    return;
  }
  auto drawable = theme.paragraph(configuration(paragraph, in));
  if (in.tightSpacingEnabled) drawable = drawable.margins(0.0, tightGap);
  addLine(std::move(drawable), paragraph.content, 0, in);
}

void BlockSequence::addCode(BlockNode::codeBlock const& code, Place const& in) {
  auto const info = code.fenceInfo.value_or("");
  CodeBlockConfiguration const configuration{
      .language = info.substr(0, info.find(' ')), .content = code.content, .label = in.label};
  auto drawable = environment_.theme.codeBlock(configuration);
  auto runs = environment_.codeSyntaxHighlighter(std::string(withoutLastBreak(code.content)),
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
  auto drawable = theme.table(configuration(table, in));
  Drawable const label{.text = drawable.text, .lineSpacing = drawable.lineSpacing};
  DrawnBlock::Grid grid{.columnAlignments = table.columnAlignments, .rows = {}};
  for (auto const& row : table.rows) {
    auto& cells = grid.rows.emplace_back();
    for (auto const& cell : row.cells) {
      auto look =
          theme.tableCell({.row = grid.rows.size() - 1, .column = cells.size(), .label = label});
      auto runs = runsOf(cell.content, look.text);
      cells.push_back({std::move(look), std::move(runs)});
    }
  }
  put({.content = std::move(grid), .drawable = std::move(drawable)}, in);
}

void BlockSequence::put(DrawnBlock block, Place const& in) {
  block.gapAbove = blocks_.empty() ? 0 : std::max(gap_, block.drawable.margin.top.value_or(0));
  gap_ = block.drawable.margin.bottom.value_or(0);
  block.leading = in.leading;
  block.trailing = in.trailing;
  block.frame = in.frame;
  for (auto const* frame = in.frame.get(); frame; frame = frame->outer.get()) {
    if (!blocks_.empty() && blocks_.back().isIn(*frame)) break;
    block.paddingAbove += frame->top;
  }
  block.markers = std::exchange(waitingMarkers_, {});
  blocks_.push_back(std::move(block));
}

}  // namespace vek
