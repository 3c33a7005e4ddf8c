// SPDX-License-Identifier: MIT
// What the windows of transcripts cost, on a screen of their own: the first frame of one, each
// frame of a scroll through it, and the memory of many. Status 0 when all bounds hold.
#include <map>
#include <sstream>
#include <string>

#include "Bound.hpp"
#include "support/Desktop.hpp"

namespace {

std::map<std::string, double> stageFigures() {
  vek::test::Desktop const desktop;
  std::map<std::string, double> figures;
  std::istringstream lines(desktop.run({DOCUMENT_STAGE}));
  std::string name;
  for (double value = 0; lines >> name >> value;) figures[name] = value;
  return figures;
}

}  // namespace

int main() {
  constexpr double frame = 1000.0 / 60;
  auto const figures = stageFigures();
  bool allHold = vek::holds("analysis, ms to the first frame, first window of all",
                            figures.at("open-first"), 120);
  allHold &= vek::holds("  the same, windows after it", figures.at("open-median"), 120);
  allHold &= vek::holds("megabytes of one more window", figures.at("window-megabytes"), 8);
  allHold &= vek::holds("scroll, ms from frame to frame, p99", figures.at("scroll-p99"), frame);
  for (std::string const text : {"code", "table", "paragraph", "line"}) {
    allHold &= vek::holds("1 MB of one " + text + ", ms to the first frame",
                          figures.at("open-" + text + "-median"), 120);
    allHold &= vek::holds("  its scroll, ms from frame to frame, p99",
                          figures.at("scroll-" + text + "-p99"), frame);
  }
  return allHold ? 0 : 1;
}
