// SPDX-License-Identifier: MIT
// Texts of a language model: their tree keeps the whole text and survives being written back.
#include "FuzzInput.hpp"
#include "markdown/MarkdownDocument.hpp"

#include <boost/algorithm/string/erase.hpp>

#include <cctype>
#include <string>

namespace {

/// The tree does not tell "1)" from "1.", a plain item among tasks from one to be done, nor a task
/// among numbered items, which is set without its number, from any other.
std::string words(std::string text) {
  boost::algorithm::erase_all(text, "[x]");
  std::erase_if(text, [](unsigned char c) { return c < 0x80 && std::isalpha(c) == 0; });
  return text;
}

}  // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace vek;
  auto const document = MarkdownDocument::parse(test::text(data, size));
  auto const content = document.content();
  MarkdownDocument const written(content);
  test::expect(written.content() == content);
  test::expect(words(written.plainText()) == words(document.plainText()));
  return 0;
}
