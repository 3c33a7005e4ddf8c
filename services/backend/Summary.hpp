// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vek::services {

/// Names the rules that summaries are made by. Its number rises when they would make another one.
inline constexpr std::string_view summaryMaker = "rules 1";

/// What a conversation was about, in Markdown: its key points, a task list of what was promised or
/// asked for, and a table of the figures and dates. Made by rules alone, so the same text gives the
/// same summary; an empty text gives an empty one. English.
[[nodiscard]] std::string summary(std::string_view transcript);

}  // namespace vek::services
