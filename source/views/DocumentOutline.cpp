// SPDX-License-Identifier: MIT
#include "views/DocumentOutline.hpp"

#include <algorithm>
#include <span>

#include "views/TextPiece.hpp"

namespace vek {

using Kind = DocumentOutline::Node::Kind;

namespace {

Kind kindOf(DrawnBlock::Frame::Kind kind) {
  using Frame = DrawnBlock::Frame::Kind;
  return kind == Frame::quote ? Kind::quote : kind == Frame::list ? Kind::list : Kind::item;
}

std::vector<DrawnBlock::Frame const*> framesOf(DrawnBlock const& block) {
  std::vector<DrawnBlock::Frame const*> frames;
  for (auto const* frame = block.frame.get(); frame; frame = frame->outer.get())
    frames.push_back(frame);
  std::ranges::reverse(frames);
  return frames;
}

}  // namespace

DocumentOutline::DocumentOutline(DocumentLayout const& document) {
  for (std::size_t i = 0; i < document.blocks().size(); ++i) {
    auto const& block = document.blocks()[i];
    auto const from = document.startOf(i);
    auto const parent = enterFrames(block, from);
    if (auto const* text = std::get_if<DrawnBlock::Text>(&block.content)) {
      addText(parent, block, *text, from);
    } else if (auto const* grid = std::get_if<DrawnBlock::Grid>(&block.content)) {
      addGrid(parent, *grid, from);
    } else if (auto const* flow = std::get_if<ImageFlow>(&block.content)) {
      addImages(parent, *flow, from);
    } else {
      add(parent, {.kind = Kind::rule, .from = from, .to = from});
    }
  }
}

std::size_t DocumentOutline::add(std::size_t parent, Node node) {
  auto const index = nodes_.size();
  node.parent = parent;
  node.position = nodes_[parent].children.size();
  nodes_[parent].children.push_back(index);
  auto const to = node.to;
  nodes_.push_back(std::move(node));
  // What is around it ends where it ends.
  for (auto around = parent; nodes_[around].to < to; around = nodes_[around].parent)
    nodes_[around].to = to;
  return index;
}

std::size_t DocumentOutline::enterFrames(DrawnBlock const& block, qsizetype from) {
  auto const frames = framesOf(block);
  std::size_t common = 0;
  while (common < std::min(frames.size(), open_.size()) && open_[common].first == frames[common])
    ++common;
  open_.resize(common);
  auto marker = block.markers.begin();
  for (auto const* frame : std::span(frames).subspan(common)) {
    Node node{.kind = kindOf(frame->kind), .from = from, .to = from};
    if (frame->kind == Frame::Kind::item && marker != block.markers.end()) {
      auto const& drawable = (marker++)->drawable;
      node.marker = QString::fromStdString(drawable.label);
      if (!drawable.symbol.empty()) node.isDone = drawable.symbol != "square";
    }
    auto const parent = open_.empty() ? 0 : open_.back().second;
    open_.emplace_back(frame, add(parent, std::move(node)));
  }
  return open_.empty() ? 0 : open_.back().second;
}

void DocumentOutline::addText(std::size_t parent, DrawnBlock const& block,
                              DrawnBlock::Text const& text, qsizetype from) {
  auto const kind = text.headingLevel > 0         ? Kind::heading
                    : block.drawable.isScrollable ? Kind::code
                                                  : Kind::paragraph;
  auto const to = from + textOf(text.runs).size();
  auto const node = add(parent, {.kind = kind, .from = from, .to = to, .level = text.headingLevel});
  addLinks(node, text.runs, from);
}

void DocumentOutline::addGrid(std::size_t parent, DrawnBlock::Grid const& grid, qsizetype from) {
  auto const columns = grid.columnAlignments.size();
  auto const table =
      add(parent, {.kind = Kind::table, .from = from, .to = from, .columns = columns});
  for (auto const& row : grid.rows) {
    for (auto const& cell : row) {
      auto const to = from + textOf(cell.runs).size();
      addLinks(add(table, {.kind = Kind::cell, .from = from, .to = to}), cell.runs, from);
      from = to + 1;
    }
  }
}

void DocumentOutline::addImages(std::size_t parent, ImageFlow const& flow, qsizetype from) {
  for (auto const& item : flow) {
    auto const* image = std::get_if<RawImageData>(&item);
    if (!image) continue;
    auto const to = from + QString::fromStdString(image->alt).size();
    add(parent, {.kind = Kind::image, .from = from, .to = to, .destination = image->destination});
    from = to + 1;
  }
}

void DocumentOutline::addLinks(std::size_t parent, std::vector<InlineRun> const& runs,
                               qsizetype from) {
  for (auto run = runs.begin(); run != runs.end();) {
    auto const begin = from;
    auto const& destination = run->destination;
    // A link is all the pieces that lead to one place.
    for (; run != runs.end() && run->destination == destination; ++run) from += textOf(*run).size();
    if (destination)
      add(parent, {.kind = Kind::link, .from = begin, .to = from, .destination = destination});
  }
}

}  // namespace vek
