// SPDX-License-Identifier: MIT
#pragma once

namespace vek {

enum class RawTableColumnAlignment : unsigned char { none, left, center, right };

}  // namespace vek
