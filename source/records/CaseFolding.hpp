// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vek {

/// A text in UTF-8 as it compares and is looked into where upper and lower case, and different
/// ways to write a character, are no difference. In all scripts, for no language.
[[nodiscard]] std::string caseFolded(std::string_view text);

}  // namespace vek
