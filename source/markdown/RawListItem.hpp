// SPDX-License-Identifier: MIT
#pragma once

#include "markdown/Children.hpp"

namespace vek {

struct BlockNode;

struct RawListItem {
  Children<BlockNode> children;
  bool operator==(RawListItem const&) const = default;
};

}  // namespace vek
