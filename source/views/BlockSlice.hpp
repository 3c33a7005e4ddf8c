// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstddef>
#include <vector>

#include "markdown/DrawnBlock.hpp"

namespace vek {

/// A place in a block: a run, a row or an image, and how many bytes of the run come before.
struct BlockPlace {
  std::size_t item = 0;
  std::size_t offset = 0;

  bool operator==(BlockPlace const&) const = default;
};

/// What is laid out at a time: a whole block, or about a page of what is longer.
struct BlockSlice {
  std::size_t block = 0;
  BlockPlace from = {};
  BlockPlace to = {};
  /// Where its text begins and ends in that of the document.
  qsizetype start = 0;
  qsizetype end = 0;
  bool isFirst = true;
  bool isLast = true;
  /// That of the whole block, where this is a part of it.
  Qt::LayoutDirection direction = Qt::LayoutDirectionAuto;

  [[nodiscard]] bool isWhole() const { return isFirst && isLast; }
};

/// All blocks in slices, none of which is much longer than the others. Appends the text of the
/// blocks to that of the document, with a break behind each.
[[nodiscard]] std::vector<BlockSlice> slicesOf(std::vector<DrawnBlock> const& blocks,
                                               QString& text);

/// The runs of a slice, the first and the last of them as far as they are in it.
[[nodiscard]] std::vector<InlineRun> runsBetween(std::vector<InlineRun> const& runs,
                                                 BlockPlace from, BlockPlace to);

/// The place so many characters of the document's text behind another.
[[nodiscard]] BlockPlace placeAfter(std::vector<InlineRun> const& runs, BlockPlace place,
                                    qsizetype characters);

}  // namespace vek
