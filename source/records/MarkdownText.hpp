// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vek {

/// One line of plain text as Markdown that shows it as it is, at the start of a line or in one. The
/// blanks around it, which Markdown would take for structure, are left out.
[[nodiscard]] std::string markdownText(std::string_view line);

}  // namespace vek
