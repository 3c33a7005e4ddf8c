// SPDX-License-Identifier: MIT
#include "records/MarkdownText.hpp"

#include <algorithm>
#include <cstddef>

namespace vek {
namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";
constexpr std::string_view specialAnywhere = "\\`*_[]<>#~|&";
constexpr std::string_view specialAtStart = "+-=";
constexpr std::string_view digits = "0123456789";

std::string_view trimmed(std::string_view line) {
  auto const first = line.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return line.substr(first, line.find_last_not_of(blanks) + 1 - first);
}

/// Where the mark of a numbered list stands, which makes one of the digits before it.
std::size_t listMark(std::string_view line) {
  auto const end = std::min(line.find_first_not_of(digits), line.size());
  bool const isList = end > 0 && end < line.size() && (line[end] == '.' || line[end] == ')');
  return isList ? end : std::string_view::npos;
}

}  // namespace

std::string markdownText(std::string_view line) {
  line = trimmed(line);
  auto const mark = listMark(line);
  std::string result;
  result.reserve(line.size());
  for (std::size_t i = 0; i < line.size(); ++i) {
    bool const isSpecial = specialAnywhere.find(line[i]) != std::string_view::npos || i == mark ||
                           (i == 0 && specialAtStart.find(line[i]) != std::string_view::npos);
    if (isSpecial) result += '\\';
    bool const endsLine = line[i] == '\n' || line[i] == '\r';
    result += endsLine ? ' ' : line[i];
  }
  return result;
}

}  // namespace vek
