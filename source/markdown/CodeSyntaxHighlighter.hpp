// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "markdown/InlineText.hpp"

namespace vek {

/// Gives code its colours: the pieces of `code`, whose texts add up to it. The language is empty
/// where the text names none.
using CodeSyntaxHighlighter = std::function<std::vector<InlineRun>(
    std::string const& code, std::string_view language, TextAttributes const& attributes)>;

/// Leaves code as it is.
inline std::vector<InlineRun> plainTextHighlighter(std::string const& code,
                                                   std::string_view /*language*/,
                                                   TextAttributes const& attributes) {
  return {{.text = code, .attributes = attributes}};
}

}  // namespace vek
