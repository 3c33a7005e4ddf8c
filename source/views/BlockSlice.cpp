// SPDX-License-Identifier: MIT
#include "views/BlockSlice.hpp"

#include <string_view>
#include <utility>

#include "views/TableLayout.hpp"

namespace vek {

namespace {

/// Bytes of text in a slice. Lines that stay whole may need twice as much.
constexpr std::size_t sliceLength = 2000;
/// What a run costs beside its text, in bytes.
constexpr std::size_t runCost = 16;
constexpr std::size_t cellsOfSlice = 60;
constexpr std::size_t imagesOfSlice = 50;

/// How much of a text comes next: a line or a piece of it, never a part of a character.
std::size_t unitLength(std::string_view text) {
  auto const end = text.substr(0, sliceLength).find('\n');
  if (end != std::string_view::npos) return end + 1;
  if (text.size() <= sliceLength) return text.size();
  auto length = sliceLength;
  while (length > 1 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
  return length;
}

std::size_t characterLength(char first) {
  auto const byte = static_cast<unsigned char>(first);
  return byte < 0x80U ? 1 : byte < 0xE0U ? 2 : byte < 0xF0U ? 3 : 4;
}

class Slicer {
 public:
  explicit Slicer(QString& text) : text_(text) {}

  void add(DrawnBlock const& block, std::size_t index) {
    auto const first = slices.size();
    slices.push_back({.block = index, .start = text_.size()});
    if (auto const* text = std::get_if<DrawnBlock::Text>(&block.content)) {
      addRuns(text->runs, block.drawable.isScrollable);
    } else if (auto const* grid = std::get_if<DrawnBlock::Grid>(&block.content)) {
      addRows(*grid);
    } else if (auto const* flow = std::get_if<ImageFlow>(&block.content)) {
      addImages(*flow);
    }
    text_ += u'\n';
    slices.back().end = text_.size();
    if (!slices.back().isFirst) setDirection(first);
  }

  std::vector<BlockSlice> slices;

 private:
  void cut(BlockPlace place) {
    auto& last = slices.back();
    last.isLast = false;
    last.to = place;
    last.end = text_.size();
    slices.push_back({.block = last.block, .from = place, .start = text_.size(), .isFirst = false});
  }

  void addRuns(std::vector<InlineRun> const& runs, bool keepsLines) {
    std::size_t taken = 0;
    bool isLineStart = true;
    for (BlockPlace place; place.item < runs.size(); ++place.item) {
      auto const& run = runs[place.item];
      place.offset = 0;
      taken += runCost;
      do {
        auto const rest = std::string_view(run.text).substr(place.offset);
        auto const length = unitLength(rest);
        auto const most = keepsLines && !isLineStart ? 2 * sliceLength : sliceLength;
        bool const isFull = taken + length > most && text_.size() > slices.back().start;
        if (isFull) {
          cut(place);
          taken = 0;
        }
        auto const unit = rest.substr(0, length);
        text_ += run.image && run.text.empty() ? QString(QChar::ObjectReplacementCharacter)
                                               : documentText(unit);
        taken += length;
        isLineStart = unit.ends_with('\n');
        place.offset += length;
      } while (place.offset < run.text.size());
    }
    slices.back().to = {.item = runs.size()};
  }

  void addRows(DrawnBlock::Grid const& grid) {
    std::size_t cells = 0;
    std::size_t taken = 0;
    for (std::size_t row = 0; row < grid.rows.size(); ++row) {
      if (row > 0) text_ += u'\n';
      bool const isFull = cells + grid.rows[row].size() > cellsOfSlice || taken > sliceLength;
      if (isFull && row > slices.back().from.item) {
        cut({.item = row});
        cells = taken = 0;
      }
      auto const begin = text_.size();
      text_ += textOf(grid.rows[row]);
      cells += grid.rows[row].size();
      taken += static_cast<std::size_t>(text_.size() - begin);
    }
    slices.back().to = {.item = grid.rows.size()};
  }

  void addImages(ImageFlow const& flow) {
    bool isFirst = true;
    for (std::size_t i = 0; i < flow.size(); ++i) {
      auto const* image = std::get_if<RawImageData>(&flow[i]);
      if (!image) continue;
      if (!std::exchange(isFirst, false)) text_ += u'\n';
      if (i >= slices.back().from.item + imagesOfSlice) cut({.item = i});
      text_ += QString::fromStdString(image->alt);
    }
    slices.back().to = {.item = flow.size()};
  }

  void setDirection(std::size_t first) {
    bool const isRightToLeft = QStringView(text_).sliced(slices[first].start).isRightToLeft();
    for (; first < slices.size(); ++first)
      slices[first].direction = isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight;
  }

  QString& text_;
};

}  // namespace

std::vector<BlockSlice> slicesOf(std::vector<DrawnBlock> const& blocks, QString& text) {
  Slicer slicer(text);
  slicer.slices.reserve(blocks.size());
  for (std::size_t i = 0; i < blocks.size(); ++i) slicer.add(blocks[i], i);
  return std::move(slicer.slices);
}

std::vector<InlineRun> runsBetween(std::vector<InlineRun> const& runs, BlockPlace from,
                                   BlockPlace to) {
  std::vector<InlineRun> between;
  for (auto item = from.item; item < runs.size() && item <= to.item; ++item) {
    auto const& run = runs[item];
    auto const begin = item == from.item ? from.offset : 0;
    auto const end = item == to.item ? to.offset : run.text.size();
    if (item == to.item && end == 0) break;
    between.push_back({run.text.substr(begin, end - begin), run.attributes, run.destination});
    // What goes on in the next slice has its image in the first.
    if (begin == 0) between.back().image = run.image;
  }
  return between;
}

BlockPlace placeAfter(std::vector<InlineRun> const& runs, BlockPlace place, qsizetype characters) {
  while (characters > 0 && place.item < runs.size()) {
    auto const& run = runs[place.item];
    if (run.image && run.text.empty()) --characters;
    while (characters > 0 && place.offset < run.text.size()) {
      auto const length = characterLength(run.text[place.offset]);
      place.offset += length;
      // Outside of the basic plane a character is a pair.
      characters -= length == 4 ? 2 : 1;
    }
    if (place.offset >= run.text.size()) place = {.item = place.item + 1};
  }
  return place;
}

}  // namespace vek
