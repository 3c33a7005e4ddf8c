// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "markdown/DrawnBlock.hpp"

namespace vek {

/// Text as it stands, a block a line.
std::vector<DrawnBlock> plainTextBlocks(std::string_view text);

}  // namespace vek
