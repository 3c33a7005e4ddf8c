// SPDX-License-Identifier: MIT
#pragma once

#include "markdown/RawTableCell.hpp"

namespace vek {

struct RawTableRow {
  Children<RawTableCell> cells;
  bool operator==(RawTableRow const&) const = default;
};

}  // namespace vek
