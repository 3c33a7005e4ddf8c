// SPDX-License-Identifier: MIT
// Loads a list of 10,000 transcripts with their texts from the local services, in turn with an HTTP
// client that fetches the same bodies and does nothing with them.
//
//     TranscriptsBenchmark [TRANSCRIPTS]     exit status 1 when a bound is not kept
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "TranscriptsLoad.hpp"
#include "runtime/MainQueue.hpp"

namespace vek::benchmark {
namespace {

constexpr int rounds = 5;
constexpr double largestRatio = 1.5;
constexpr double largestGrowthAboveTexts = 60;
constexpr double longestBusy = 8;
constexpr double longestOpening = 1;

int run(int count) {
  ManyTranscripts const services;
  services.add(count);
  auto const store = AppStore::make({}, [] { return AppFeature(); });
  double growth = 0;
  double busy = 0;
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    auto const load = loadList(*store);
    if (load.settled != static_cast<std::size_t>(count)) {
      fmt::print("only {} transcripts have their texts\n", load.settled);
      return 1;
    }
    // Later rounds find memory that the peer has left.
    if (round == 0) growth = load.growth - load.texts;
    busy = std::max(busy, load.longestBusy);
    double const raw = services.fetchRaw(store->state());
    ratios.push_back(load.seconds / raw);
    fmt::print(
        "{} transcripts: {:.3f} s, raw HTTP {:.3f} s, ratio {:.2f}, longest busy {:.1f} ms "
        "({:.1f} ms on the wall)\n",
        count, load.seconds, raw, ratios.back(), load.longestBusy, load.longestWait);
  }
  std::ranges::sort(ratios);
  double const ratio = ratios[ratios.size() / 2];
  double const opening = openTranscripts(*store);
  fmt::print("median ratio {:.2f} (at most {})\n", ratio, largestRatio);
  fmt::print("memory above the texts {:.1f} MB (at most {})\n", growth, largestGrowthAboveTexts);
  fmt::print("main thread busy for {:.1f} ms at most (at most {})\n", busy, longestBusy);
  fmt::print("a transcript is open after {:.3f} ms at most (at most {})\n", opening,
             longestOpening);
  return ratio <= largestRatio && growth <= largestGrowthAboveTexts && busy <= longestBusy &&
                 opening <= longestOpening
             ? 0
             : 1;
}

}  // namespace
}  // namespace vek::benchmark

int main(int count, char** arguments) {
  vek::MainQueue::shared();
  try {
    return vek::benchmark::run(count > 1 ? std::stoi(arguments[1]) : 10'000);
  } catch (std::exception const& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
}
