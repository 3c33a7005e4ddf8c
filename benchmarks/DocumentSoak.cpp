// SPDX-License-Identifier: MIT
// Texts that are made to be hard to read, each in two sizes and in a process of its own: reading,
// laying out and drawing the larger one takes not much more than its share of time and memory. One
// text of 50 MB is among them. Status 0 when all bounds hold.
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <array>
#include <functional>
#include <stdexcept>
#include <string>

#include "Bound.hpp"
#include "markdown/BlockSequence.hpp"
#include "views/DocumentLayout.hpp"

namespace vek {
namespace {

constexpr std::size_t smallSize = 250'000;
constexpr std::size_t growth = 4;
constexpr std::size_t largestSize = 50'000'000;
constexpr QSize view(680, 800);

struct Cost {
  double seconds = 0;
  double megabytes = 0;
};

std::string repeated(std::string const& part, std::size_t size) {
  std::string text;
  text.reserve(size + part.size());
  while (text.size() < size) text += part;
  return text;
}

void draw(DocumentLayout& layout, qreal top) {
  QImage page(view, QImage::Format_RGB32);
  QPainter painter(&page);
  layout.draw(painter, top, top + view.height(), {});
}

void readAndDraw(std::string const& text) {
  DocumentLayout layout;
  layout.setWidth(view.width());
  layout.setBlocks(BlockSequence::of(MarkdownContent(text), {}));
  draw(layout, 0);
  layout.measureUntil(DocumentLayout::Clock::time_point::max());
  draw(layout, layout.height() - view.height());
}

/// Of this process so far. Processor time, since others use the machine too.
Cost present() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto const seconds = [](timeval time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return {seconds(usage.ru_utime) + seconds(usage.ru_stime),
          static_cast<double>(usage.ru_maxrss) / 1024};
}

/// In a process of its own, since only that tells of its memory.
Cost costOf(std::string const& text) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  auto const child = fork();
  if (child == 0) {
    auto const before = present();
    readAndDraw(text);
    auto const after = present();
    Cost const cost{after.seconds - before.seconds, after.megabytes - before.megabytes};
    _exit(write(ends[1], &cost, sizeof cost) == sizeof cost ? 0 : 1);
  }
  close(ends[1]);
  Cost cost;
  bool const isTold = read(ends[0], &cost, sizeof cost) == sizeof cost;
  close(ends[0]);
  waitpid(child, nullptr, 0);
  if (!isTold) throw std::runtime_error("it did not end well");
  return cost;
}

bool measure(std::string const& name, std::function<std::string(std::size_t)> const& make) {
  try {
    auto const small = costOf(make(smallSize));
    auto const large = costOf(make(growth * smallSize));
    fmt::print("{:<18} {:7.3f} s {:8.1f} MB, {} times as long {:7.3f} s {:8.1f} MB\n", name,
               small.seconds, small.megabytes, growth, large.seconds, large.megabytes);
    bool const isLinear =
        holds("  time, times that of the shorter", large.seconds / small.seconds, 1.5 * growth);
    return holds("  memory, bytes a byte of text", large.megabytes * 1e6 / (growth * smallSize),
                 600) &&
           isLinear;
  } catch (std::runtime_error const& error) {
    fmt::print("{}: {}   MISSED\n", name, error.what());
    return false;
  }
}

std::function<std::string(std::size_t)> repeating(std::string part, std::string first = "") {
  return [part = std::move(part), first = std::move(first)](std::size_t size) {
    return first + repeated(part, size);
  };
}

bool measureLargest() {
  auto const text = repeated("Word after *word* was said, and `code`, and more.\n\n", largestSize);
  DocumentLayout layout;
  layout.setWidth(view.width());
  auto const before = present();
  layout.setBlocks(BlockSequence::of(MarkdownContent(text), {}));
  draw(layout, 0);
  auto const after = present();
  fmt::print("50 MB: {:.1f} s to the first page, {:.0f} MB\n", after.seconds - before.seconds,
             after.megabytes);
  return holds("  memory, bytes a byte of text", after.megabytes * 1e6 / largestSize, 100);
}

bool measureAll() {
  bool allHold = measure("brackets", repeating("["));
  allHold &= measure("links", repeating("[a]("));
  allHold &= measure("images", repeating("![a](b)"));
  allHold &= measure("emphasis", repeating("*a **b "));
  allHold &= measure("stars", repeating("*"));
  allHold &= measure("ticks", repeating("`a``b"));
  allHold &= measure("strikes", repeating("~~a~"));
  allHold &= measure("tags", repeating("<a><br>"));
  allHold &= measure("comments", repeating("<!-- "));
  allHold &= measure("quotes", repeating("> "));
  allHold &= measure("quoted lines", repeating("> a\n"));
  allHold &= measure("nested items", repeating("- "));
  allHold &= measure("items", repeating("- a\n"));
  allHold &= measure("numbers", repeating("1. a\n"));
  allHold &= measure("tasks", repeating("- [x] a\n"));
  allHold &= measure("headings", repeating("# a\n"));
  allHold &= measure("rules", repeating("***\n"));
  allHold &= measure("code", repeating("    a\n"));
  allHold &= measure("line of code", repeating("code ", "```\n"));
  allHold &= measure("word", repeating("word"));
  allHold &= measure("accents", repeating("e\u0301\u0301\u0301"));
  allHold &= measure("right to left", repeating("\u05d0\u05d1 a "));
  allHold &= measure("breaks", repeating("a\\\n"));
  allHold &= measure("columns", repeating("|a"));
  allHold &= measure("wide table", [](std::size_t size) {
    constexpr std::size_t columns = 10'000;
    auto const row = repeated("|a", 2 * columns) + "\n";
    return row + repeated("|-", 2 * columns) + "\n" + repeated(row, size);
  });
  allHold &= measure("table", repeating("|a|b\n", "|a|b\n|-|-\n"));
  allHold &= measure("cell", repeating("word ", "|a|b\n|-|-\n|"));
  allHold &= measure("addresses", repeating("www.a.org a@b.org "));
  allHold &= measure("definitions", repeating("[a]: b\n"));
  return measureLargest() && allHold;
}

}  // namespace
}  // namespace vek

int main(int argumentCount, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication const application(argumentCount, arguments);
  return vek::measureAll() ? 0 : 1;
}
