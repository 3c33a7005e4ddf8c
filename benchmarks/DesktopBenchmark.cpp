// SPDX-License-Identifier: MIT
// What the desktop program costs beside the least that a program in Qt Quick can be, both on a
// screen of their own, one after the other. Status 0 when all bounds hold.
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Bound.hpp"
#include "support/Desktop.hpp"

namespace {

using namespace vek::test;
using vek::holds;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int starts = 11;
constexpr std::chrono::seconds settling{3};
constexpr std::chrono::seconds idleTime{20};

template <class Value>
Value median(std::vector<Value> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

/// A program that tells of its frames as Qt does when asked to.
std::unique_ptr<ChildProcess> startTelling(Desktop const& desktop, std::string const& program) {
  return desktop.start({"env", "QT_LOGGING_RULES=qt.scenegraph.time.renderloop=true",
                        "QT_FORCE_STDERR_LOGGING=1", "sh", "-c", R"(exec "$0" 2>&1)", program});
}

Milliseconds firstFrame(Desktop const& desktop, std::string const& program) {
  auto const begun = Clock::now();
  auto const process = startTelling(desktop, program);
  while (auto const line = process->readLine()) {
    if (line->find("Frame rendered") != std::string::npos) return Clock::now() - begun;
  }
  throw std::runtime_error(program + " showed nothing");
}

/// The figure after a key in a file of the kernel's.
long figure(std::filesystem::path const& file, std::string const& key) {
  std::ifstream input(file);
  for (std::string word; input >> word;) {
    if (word != key + ":") continue;
    long value = 0;
    input >> value;
    return value;
  }
  return 0;
}

long wakeUps(std::filesystem::path const& process) {
  long sum = 0;
  for (auto const& thread : std::filesystem::directory_iterator(process / "task")) {
    sum += figure(thread.path() / "status", "voluntary_ctxt_switches");
  }
  return sum;
}

struct AtRest {
  double megabytes;
  double wakeUpsPerSecond;
};

AtRest rest(Desktop const& desktop, std::string const& program, std::string const& title) {
  auto const process = desktop.start({program});
  if (!eventually([&] { return desktop.window(title).has_value(); })) {
    throw std::runtime_error(program + " showed nothing");
  }
  std::this_thread::sleep_for(settling);
  auto const folder = std::filesystem::path("/proc") / std::to_string(process->pid());
  auto const before = wakeUps(folder);
  std::this_thread::sleep_for(idleTime);
  auto const count = wakeUps(folder) - before;
  return {static_cast<double>(figure(folder / "smaps_rollup", "Pss")) / 1024,
          static_cast<double>(count) / static_cast<double>(idleTime.count())};
}

std::map<std::string, double> recordingFigures(Desktop const& desktop) {
  std::map<std::string, double> figures;
  std::istringstream lines(desktop.run({RECORDING_STAGE}));
  std::string name;
  for (double value = 0; lines >> name >> value;) figures[name] = value;
  return figures;
}

bool measureStart(Desktop const& desktop) {
  std::vector<Milliseconds> hello;
  std::vector<Milliseconds> vek;
  for (int i = 0; i < starts; ++i) {
    hello.push_back(firstFrame(desktop, HELLO_WINDOW));
    vek.push_back(firstFrame(desktop, VEK_PROGRAM));
  }
  auto const [ours, least] = std::pair(median(vek), median(hello));
  fmt::print("first frame: {:.0f} ms, hello {:.0f} ms\n", ours.count(), least.count());
  return holds("first frame, times hello's", ours / least, 1.5);
}

bool measureRest(Desktop const& desktop) {
  auto const hello = rest(desktop, HELLO_WINDOW, "Hello");
  auto const vek = rest(desktop, VEK_PROGRAM, "VEK");
  fmt::print("memory: {:.1f} MiB, hello {:.1f} MiB\n", vek.megabytes, hello.megabytes);
  bool const isSmall = holds("memory, times hello's", vek.megabytes / hello.megabytes, 1.6);
  return holds("wake-ups a second at rest; hello's", vek.wakeUpsPerSecond,
               hello.wakeUpsPerSecond) &&
         isSmall;
}

bool measureRecording(Desktop const& desktop) {
  auto const figures = recordingFigures(desktop);
  bool allHold = holds("share of a core while the symbol pulses", figures.at("pulsing"), 0.05);
  for (std::string const text : {"short", "long"}) {
    fmt::print("{} text: median {:.1f} ms\n", text, figures.at(text + "-median"));
    allHold &= holds(text + " text, ms from send to its frame, p99", figures.at(text + "-p99"), 16);
  }
  return allHold;
}

}  // namespace

int main() {
  Desktop const desktop;
  bool allHold = measureStart(desktop);
  allHold &= measureRest(desktop);
  allHold &= measureRecording(desktop);
  return allHold ? 0 : 1;
}
