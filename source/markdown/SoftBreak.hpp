// SPDX-License-Identifier: MIT
#pragma once

namespace vek {

/// What a line's end in the source is on screen.
struct SoftBreak {
  enum class Mode { space, lineBreak };
};

}  // namespace vek
