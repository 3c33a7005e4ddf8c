// SPDX-License-Identifier: MIT
#include "markdown/MarkdownDocument.hpp"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <mutex>
#include <utility>

#include "markdown/MarkdownReader.hpp"
#include "markdown/MarkdownWriter.hpp"

namespace vek {

namespace {

/// No smart punctuation, no hard breaks, no source positions.
constexpr int options = CMARK_OPT_DEFAULT;
constexpr int unwrapped = 0;

void ensureRegistered() {
  static std::once_flag once;
  std::call_once(once, cmark_gfm_core_extensions_ensure_registered);
}

void attach(cmark_parser& parser, char const* name) {
  auto* extension = cmark_find_syntax_extension(name);
  if (extension) cmark_parser_attach_syntax_extension(&parser, extension);
}

}  // namespace

void MarkdownDocument::Free::operator()(cmark_node* node) const {
  cmark_node_free(node);
}

/// cmark-gfm fills short rows up to the width of their table, and reads a row in the square of its
/// width. What is wider or larger than anyone reads stays text, so that a short text stays small.
MarkdownDocument::Tables MarkdownDocument::tablesOf(std::string_view text) {
  constexpr std::size_t mostColumns = 1000;
  constexpr std::size_t mostCells = 200'000;
  std::size_t cells = 0;
  std::size_t lines = 0;
  std::size_t columns = 0;
  while (!text.empty() && columns <= mostColumns && cells + columns * lines <= mostCells) {
    auto const line = text.substr(0, text.find('\n'));
    // Only an empty line is sure to end a table: others are rows of it, though they have no bar.
    if (line.find_first_not_of(" \t\r") == std::string_view::npos) {
      cells += std::exchange(columns, 0) * std::exchange(lines, 0);
    }
    columns = std::max(columns, static_cast<std::size_t>(std::ranges::count(line, '|')));
    if (columns > 0) ++lines;
    text.remove_prefix(std::min(text.size(), line.size() + 1));
  }
  bool const isReadable = columns <= mostColumns && cells + columns * lines <= mostCells;
  return isReadable ? Tables::asGrid : Tables::asText;
}

MarkdownDocument MarkdownDocument::parse(std::string_view text, Tables tables) {
  ensureRegistered();
  std::unique_ptr<cmark_parser, decltype(&cmark_parser_free)> const parser(
      cmark_parser_new(options), cmark_parser_free);
  for (auto const* name : {"autolink", "strikethrough", "tagfilter", "tasklist"})
    attach(*parser, name);
  if (tables == Tables::asGrid) attach(*parser, "table");
  cmark_parser_feed(parser.get(), text.data(), text.size());
  return MarkdownDocument(cmark_parser_finish(parser.get()));
}

MarkdownDocument::MarkdownDocument(MarkdownContent const& content)
    : MarkdownDocument((ensureRegistered(), MarkdownWriter::write(content))) {}

MarkdownContent MarkdownDocument::content() const {
  return MarkdownReader::read(*root_);
}

std::string MarkdownDocument::plainText() const {
  std::unique_ptr<char, decltype(&std::free)> const text(
      cmark_render_plaintext(root_.get(), options, unwrapped), std::free);
  return text.get();
}

}  // namespace vek
