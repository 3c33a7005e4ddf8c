// SPDX-License-Identifier: MIT
#pragma once

namespace vek {

/// A colour by its purpose; who draws knows how it looks in the light and in the dark scheme.
enum class ThemeColor { primary, secondary, link, code, ground, border, quoteBar, done };

}  // namespace vek
