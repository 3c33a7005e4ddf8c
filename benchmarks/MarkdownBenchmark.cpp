// SPDX-License-Identifier: MIT
// What the tree of an analysis costs beside the parse of cmark-gfm alone. Status 0 when it keeps
// to its bound.
#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>
#include <fmt/format.h>
#include <time.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>

#include "AnalysisText.hpp"
#include "Bound.hpp"
#include "markdown/MarkdownContent.hpp"

namespace vek {
namespace {

constexpr std::size_t analysisSize = 50'000;
constexpr int runs = 500;

/// Milliseconds of processor time, since others use the machine too.
double cost(auto work) {
  auto const now = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
  };
  auto const start = now();
  work();
  return now() - start;
}

void parseAlone(std::string const& text) {
  std::unique_ptr<cmark_parser, decltype(&cmark_parser_free)> const parser(
      cmark_parser_new(CMARK_OPT_DEFAULT), cmark_parser_free);
  for (auto const* name : {"autolink", "strikethrough", "tagfilter", "tasklist", "table"})
    cmark_parser_attach_syntax_extension(parser.get(), cmark_find_syntax_extension(name));
  cmark_parser_feed(parser.get(), text.data(), text.size());
  cmark_node_free(cmark_parser_finish(parser.get()));
}

bool measure() {
  cmark_gfm_core_extensions_ensure_registered();
  auto const analysis = analysisText(analysisSize);
  auto parse = std::numeric_limits<double>::max();
  auto both = parse;
  // In turns, and the best of each.
  for (int i = 0; i < runs; ++i) {
    parse = std::min(parse, cost([&] { parseAlone(analysis); }));
    both = std::min(both, cost([&] { static_cast<void>(MarkdownContent(analysis)); }));
  }
  fmt::print("{} bytes: parse {:.3f} ms, parse and tree {:.3f} ms\n", analysis.size(), parse, both);
  return holds("parse and tree, times the parse", both / parse, 1.5);
}

}  // namespace
}  // namespace vek

int main() {
  return vek::measure() ? 0 : 1;
}
