// SPDX-License-Identifier: MIT
#pragma once

#include "markdown/InlineNode.hpp"

namespace vek {

struct RawTableCell {
  Children<InlineNode> content;
  bool operator==(RawTableCell const&) const = default;
};

}  // namespace vek
