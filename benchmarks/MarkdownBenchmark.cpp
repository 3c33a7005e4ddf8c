// SPDX-License-Identifier: MIT
// What the tree of an analysis costs beside the parse that it is made from. Status 0 when it keeps
// to its bound.
#include <fmt/format.h>
#include <time.h>

#include <algorithm>
#include <limits>
#include <string>

#include "AnalysisText.hpp"
#include "Bound.hpp"
#include "markdown/MarkdownDocument.hpp"

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

/// As cmark-gfm does it by itself.
void parseAlone(std::string const& text) {
  static_cast<void>(MarkdownDocument::parse(text, MarkdownDocument::Tables::asGrid));
}

bool measure() {
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
