// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace vek {

/// Whether bytes are a text in UTF-8.
[[nodiscard]] bool isUTF8(std::string_view bytes);

}  // namespace vek
