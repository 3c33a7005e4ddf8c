// SPDX-License-Identifier: MIT
// What the tree of an analysis costs beside the parse that it is made from.
#include <fmt/format.h>
#include <time.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "markdown/MarkdownDocument.hpp"

namespace vek {
namespace {

constexpr std::size_t analysisSize = 50'000;
constexpr int runs = 201;

constexpr std::string_view section = R"(## Topic

The customer asked for a *corrected* copy of the **invoice** `INV-20418`, see [the account](https://a.org/b).
She had moved in spring, and nobody had told the accounts team.

- [x] Confirm the address
- [ ] Send the copy

1. Open the record
2. Compare the addresses

| Topic | Time |
|:------|-----:|
| Start | 0:42 |
| Rest  | 7:15 |

> First time that something went wrong.

)";

/// Milliseconds of processor time, since others use the machine too: the best of all runs.
double cost(auto work) {
  auto const now = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
  };
  double best = 1e9;
  for (int i = 0; i < runs; ++i) {
    auto const start = now();
    work();
    best = std::min(best, now() - start);
  }
  return best;
}

void measure() {
  std::string analysis;
  while (analysis.size() < analysisSize) analysis += section;
  auto const parse = cost([&] { static_cast<void>(MarkdownDocument::parse(analysis)); });
  auto const both = cost([&] { static_cast<void>(MarkdownContent(analysis)); });
  fmt::print("{} bytes: parse {:.3f} ms, parse and tree {:.3f} ms, ratio {:.2f}\n", analysis.size(),
             parse, both, both / parse);
}

}  // namespace
}  // namespace vek

int main() {
  vek::measure();
  return 0;
}
