// SPDX-License-Identifier: MIT
// Loads a list of 100,000 transcripts with their texts beside one of 10,000: what a transcript
// costs must not grow with their number.
#include <fmt/format.h>

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

struct Cost {
  double microseconds;
  double kibibytes;
};

/// What each of `count` transcripts costs; nothing when not all have settled.
std::optional<Cost> load(int count) {
  auto const store = AppStore::make({}, [] { return AppFeature(); });
  auto const load = loadList(*store);
  double const opening = openTranscripts(*store);
  fmt::print(
      "{} transcripts: {:.1f} s, {:.1f} MiB above {:.1f} MiB of texts, longest busy {:.1f} ms, "
      "open after {:.3f} ms\n",
      count, load.seconds, load.growth - load.texts, load.texts, load.longestBusy, opening);
  if (load.settled != static_cast<std::size_t>(count)) return std::nullopt;
  return Cost{load.seconds / count * 1e6, (load.growth - load.texts) / count * 1024};
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
  double const memory = other->kibibytes / one->kibibytes;
  fmt::print("each takes {:.2f} times the time and {:.2f} times the memory (at most {})\n", time,
             memory, largestRatio);
  return time <= largestRatio && memory <= largestRatio ? 0 : 1;
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
