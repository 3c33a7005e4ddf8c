// SPDX-License-Identifier: MIT
// Eight hours of recording with scripted clients: what a piece costs at the start and at the end,
// beside the bare joining and replacing that each piece needs, and what memory grows by.
#include <fmt/format.h>
#include <malloc.h>

#include <chrono>
#include <string>
#include <vector>

#include "features/RecordingFeature.hpp"
#include "runtime/MainQueue.hpp"
#include "runtime/Store.hpp"

namespace {

using namespace vek;
using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;
using Action = RecordingFeature::Action;

constexpr int pieceCount = 8 * 3600 / 5;
constexpr int partialsPerPiece = 8;

std::string sentence(int number) {
  return fmt::format("This is sentence {} of a conversation that goes on and on.", number);
}

/// What the rules ask of each piece: join it and take out what is acknowledged.
Microseconds bareReplacement(std::string const& text, std::string const& piece) {
  auto const start = Clock::now();
  auto joined = text;
  joined += '\n';
  joined += piece;
  auto const at = joined.find(text);
  auto const delta = joined.substr(0, at) + joined.substr(at + text.size());
  auto const end = Clock::now();
  return delta.size() == piece.size() + 1 ? end - start : Microseconds(-1);
}

struct Recorder {
  Stream<RecordingTranscript>::Ends pieces = Stream<RecordingTranscript>::makeStream();
  std::size_t storedBytes = 0;
  Store<RecordingFeature::State, Action>::Shared store;

  Recorder() {
    withDependencies([this](DependencyValues& values) { replaceClients(values); },
                     [this] {
                       store = Store<RecordingFeature::State, Action>::make(
                           {}, [] { return RecordingFeature(); });
                     });
    store->send(Action::recordButtonClicked{});
    MainQueue::shared().runPending();
  }

  void replaceClients(DependencyValues& values) {
    APIClient api;
    api.createTranscript = [](auto, auto) -> Task<NewTranscriptDTO> {
      co_return NewTranscriptDTO();
    };
    api.updateTranscript = [this](std::string const& text, UUID) -> Task<> {
      storedBytes += text.size();
      co_return;
    };
    values.set(apiClient, api);
    SpeechRecognitionProvider provider;
    provider.startRecording = [this]() -> Task<Stream<RecordingTranscript>> {
      co_return pieces.stream;
    };
    values.set(speechRcognitionProvider, provider);
  }

  void say(std::string const& text, bool isPartial) {
    pieces.continuation.yield({text, isPartial});
    while (MainQueue::shared().runPending() > 0) {
    }
  }

  [[nodiscard]] std::string const& text() const {
    return store->state().recording->transcript.string();
  }
};

}  // namespace

int main() {
  MainQueue::shared();
  Recorder recorder;
  std::vector<Microseconds> costs(pieceCount);
  std::vector<Microseconds> bare(pieceCount);
  auto const usedBefore = mallinfo2().uordblks;
  for (int i = 0; i < pieceCount; ++i) {
    auto const text = sentence(i);
    for (int p = 0; p < partialsPerPiece; ++p) recorder.say(text, true);
    if (i > 0) bare[static_cast<std::size_t>(i)] = bareReplacement(recorder.text(), text);
    auto const start = Clock::now();
    recorder.say(text, false);
    costs[static_cast<std::size_t>(i)] = Clock::now() - start;
  }
  auto const grownBy = mallinfo2().uordblks - usedBefore;

  auto mean = [](std::vector<Microseconds> const& values, int from, int to) {
    Microseconds sum{0};
    for (int i = from; i < to; ++i) sum += values[static_cast<std::size_t>(i)];
    return sum.count() / (to - from);
  };
  constexpr int share = pieceCount / 20;
  for (auto const [name, from] :
       {std::pair{"first 5%", 1}, std::pair{"last 5%", pieceCount - share}}) {
    auto const cost = mean(costs, from, from + share - 1);
    auto const needed = mean(bare, from, from + share - 1);
    fmt::print("{}: {:.1f} us a piece, bare replacement {:.1f} us, the rest {:.1f} us\n", name,
               cost, needed, cost - needed);
  }
  fmt::print("text {} bytes, stored {} bytes, heap grown by {} bytes ({:.2f} times the text)\n",
             recorder.text().size(), recorder.storedBytes, grownBy,
             static_cast<double>(grownBy) / static_cast<double>(recorder.text().size()));
  return recorder.storedBytes == recorder.text().size() ? 0 : 1;
}
