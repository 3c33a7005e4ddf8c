// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "markdown/Drawable.hpp"
#include "markdown/MarkdownContent.hpp"

namespace vek {

/// How a kind of block is drawn, given what is known of one of them.
template <class Configuration>
using BlockStyle = std::function<Drawable(Configuration const&)>;

struct BlockConfiguration {
  /// The block as it would be drawn without a style.
  Drawable label;
  MarkdownContent content;
};

struct CodeBlockConfiguration {
  /// The first word behind the fence; empty without one.
  std::string language;
  std::string content;
  Drawable label;
};

struct ListMarkerConfiguration {
  /// From 1 on, as lists nest.
  int listLevel = 1;
  int itemNumber = 1;
  Drawable label;
};

struct TaskListMarkerConfiguration {
  bool isCompleted = false;
  Drawable label;
};

struct TableCellConfiguration {
  /// The header is row 0.
  std::size_t row = 0;
  std::size_t column = 0;
  Drawable label;
};

}  // namespace vek
