// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "markdown/DrawnBlock.hpp"

namespace vek {

/// Text as it stands, a block a line. A line of many pages becomes several blocks, so that what is
/// laid out at a time stays small.
std::vector<DrawnBlock> plainTextBlocks(std::string_view text);

}  // namespace vek
