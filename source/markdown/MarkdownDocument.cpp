// SPDX-License-Identifier: MIT
#include "markdown/MarkdownDocument.hpp"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

#include <cstdlib>
#include <mutex>
#include <utility>
#include <vector>

#include "markdown/MarkdownReader.hpp"
#include "markdown/MarkdownWriter.hpp"
#include "markdown/ParseArena.hpp"
#include "markdown/ReadingCost.hpp"
#include "markdown/TakeLine.hpp"

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

/// cmark-gfm, too, puts this character in its place.
std::string withoutNull(std::string_view line) {
  std::string text;
  for (auto const c : line) {
    if (c == 0)
      text += "\uFFFD";
    else
      text += c;
  }
  return text;
}

/// Text that is not read as Markdown: its lines in paragraphs, with all their marks.
MarkdownContent asItStands(std::string_view text) {
  std::vector<BlockNode> blocks;
  std::vector<InlineNode> lines;
  auto const endParagraph = [&] {
    if (!lines.empty()) blocks.emplace_back(BlockNode::paragraph{std::exchange(lines, {})});
  };
  while (!text.empty()) {
    auto const line = takeLine(text);
    if (line.empty()) {
      endParagraph();
      continue;
    }
    if (!lines.empty()) lines.emplace_back(InlineNode::lineBreak{});
    lines.emplace_back(InlineNode::text{withoutNull(line)});
  }
  endParagraph();
  return MarkdownContent(std::move(blocks));
}

}  // namespace

void MarkdownDocument::Free::operator()(cmark_node* node) const {
  cmark_node_free(node);
}

MarkdownDocument MarkdownDocument::parse(std::string_view text) {
  ensureRegistered();
  auto const cost = ReadingCost::of(text);
  if (!cost.canRead) return MarkdownDocument(asItStands(text));
  std::unique_ptr<cmark_parser, decltype(&cmark_parser_free)> const parser(
      cmark_parser_new_with_mem(options, &ParseArena::memory()), cmark_parser_free);
  if (cost.canReadAutolinks) attach(*parser, "autolink");
  for (auto const* name : {"strikethrough", "tagfilter", "tasklist"}) attach(*parser, name);
  if (cost.canReadTables) attach(*parser, "table");
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
