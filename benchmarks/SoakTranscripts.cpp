// SPDX-License-Identifier: MIT
// Loads a list of 100,000 transcripts with their texts beside one of 10,000: what a transcript
// costs must not grow with their number.
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <optional>

#include "TranscriptsLoad.hpp"
#include "runtime/MainQueue.hpp"

namespace vek::benchmark {
namespace {

constexpr int few = 10'000;
constexpr int many = 100'000;
/// A step that is quadratic would make it 10.
constexpr double largestRatio = 2;
/// However long the list is, in milliseconds.
constexpr double longestOpening = 1;

struct Cost {
  double microseconds;
  double kilobytes;
  /// Of the longest stretch of work, which sorts the list.
  double busyMicroseconds;
  double opening;
};

/// What each of `count` transcripts costs; nothing when not all have settled.
std::optional<Cost> load(int count) {
  auto const store = AppStore::make({}, [] { return AppFeature(); });
  auto const load = loadList(*store);
  double const opening = openTranscripts(*store);
  fmt::print(
      "{} transcripts: {:.1f} s, {:.1f} MB above {:.1f} MB of texts, longest busy {:.1f} ms "
      "({:.1f} ms on the wall), open after {:.3f} ms\n",
      count, load.seconds, load.growth - load.texts, load.texts, load.longestBusy, load.longestWait,
      opening);
  if (load.settled != static_cast<std::size_t>(count)) return std::nullopt;
  return Cost{.microseconds = load.seconds / count * 1e6,
              .kilobytes = (load.growth - load.texts) / count * 1e3,
              .busyMicroseconds = load.longestBusy / count * 1e3,
              .opening = opening};
}

int run() {
  ManyTranscripts const services;
  services.add(few);
  auto const one = load(few);
  services.add(many - few);
  auto const other = load(many);
  if (!one || !other) {
    fmt::print("not all transcripts have their texts\n");
    return 1;
  }
  double const time = other->microseconds / one->microseconds;
  double const memory = other->kilobytes / one->kilobytes;
  double const busy = other->busyMicroseconds / one->busyMicroseconds;
  fmt::print(
      "each takes {:.2f} times the time, {:.2f} times the memory and {:.2f} times of the longest "
      "stretch (at most {}); one opens within {} ms\n",
      time, memory, busy, largestRatio, longestOpening);
  bool const isLinear = time <= largestRatio && memory <= largestRatio && busy <= largestRatio;
  return isLinear && std::max(one->opening, other->opening) <= longestOpening ? 0 : 1;
}

}  // namespace
}  // namespace vek::benchmark

int main() {
  vek::MainQueue::shared();
  try {
    return vek::benchmark::run();
  } catch (std::exception const& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
}
