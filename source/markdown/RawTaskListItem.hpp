// SPDX-License-Identifier: MIT
#pragma once

#include "markdown/Children.hpp"

namespace vek {

struct BlockNode;

struct RawTaskListItem {
  bool isCompleted = false;
  Children<BlockNode> children;
  bool operator==(RawTaskListItem const&) const = default;
};

}  // namespace vek
