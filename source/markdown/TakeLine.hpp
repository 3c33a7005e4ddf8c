// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace vek {

/// Takes the first line from a text, with the end that it may have: "\n", "\r" or "\r\n".
inline std::string_view takeLine(std::string_view& text) {
  auto const line = text.substr(0, text.find_first_of("\r\n"));
  text.remove_prefix(line.size());
  if (text.starts_with("\r\n")) text.remove_prefix(1);
  if (!text.empty()) text.remove_prefix(1);
  return line;
}

}  // namespace vek
