// SPDX-License-Identifier: MIT
#include "markdown/Children.hpp"

namespace vek::detail {

void releaseInTurn(std::shared_ptr<void const> last) {
  thread_local std::vector<std::shared_ptr<void const>>* waiting = nullptr;
  if (waiting) {
    waiting->push_back(std::move(last));
    return;
  }
  std::vector<std::shared_ptr<void const>> turns;
  waiting = &turns;
  last.reset();
  while (!turns.empty()) {
    last = std::move(turns.back());
    turns.pop_back();
    last.reset();
  }
  waiting = nullptr;
}

bool compareInTurn(Comparison comparison) {
  thread_local std::vector<Comparison>* waiting = nullptr;
  if (waiting) {
    waiting->push_back(comparison);
    return true;
  }
  std::vector<Comparison> turns = {comparison};
  waiting = &turns;
  bool areEqual = true;
  while (areEqual && !turns.empty()) {
    auto const next = turns.back();
    turns.pop_back();
    areEqual = next.areEqual(next.one, next.other);
  }
  waiting = nullptr;
  return areEqual;
}

}  // namespace vek::detail
