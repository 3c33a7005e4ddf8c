// SPDX-License-Identifier: MIT
#include "markdown/MarkdownContent.hpp"

#include <cstddef>
#include <optional>

#include "markdown/MarkdownDocument.hpp"
#include "markdown/ParseArena.hpp"

namespace vek {

namespace {

/// The document of a longer text takes its pieces of memory back one by one, and uses them again.
constexpr std::size_t longestInArena = std::size_t{1} << 20U;

}  // namespace

MarkdownContent::MarkdownContent(std::string_view text) {
  std::optional<ParseArena> arena;
  if (text.size() <= longestInArena) arena.emplace();
  *this = MarkdownDocument::parse(text).content();
}

}  // namespace vek
