// SPDX-License-Identifier: MIT
// Texts of a language model: their tree keeps the whole text and survives being written back.
#include "FuzzInput.hpp"
#include "markdown/MarkdownDocument.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

namespace {

/// How a line begins that is an item of a list; nothing when it is none.
std::size_t markerLength(std::string_view line) {
  if (line.starts_with("- ")) return 2;
  if (line.starts_with("[x] ") || line.starts_with("[ ] ")) return 4;
  auto const digits = std::min(line.find_first_not_of("0123456789"), line.size());
  auto const rest = line.substr(digits);
  return digits > 0 && (rest.starts_with(". ") || rest.starts_with(") ")) ? digits + 2 : 0;
}

/// All but blanks and what marks items: the tree does not tell "1)" from "1.", a plain item among
/// tasks from one to be done, nor a task among numbered items, which is set without its number,
/// from any other.
std::string withoutMarkers(std::string_view text) {
  std::string kept;
  while (!text.empty()) {
    auto line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    auto const skipBlanks = [&] {
      line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    };
    skipBlanks();
    for (auto length = markerLength(line); length > 0; length = markerLength(line)) {
      line.remove_prefix(length);
      skipBlanks();
    }
    std::ranges::remove_copy(line, std::back_inserter(kept), ' ');
  }
  return kept;
}

}  // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace vek;
  auto const document = MarkdownDocument::parse(test::text(data, size));
  auto const content = document.content();
  MarkdownDocument const written(content);
  test::expect(written.content() == content);
  test::expect(withoutMarkers(written.plainText()) == withoutMarkers(document.plainText()));
  return 0;
}
