// SPDX-License-Identifier: MIT
// The hosted recogniser's client at 48 kHz stereo in real time: from a buffer to its bytes on the
// socket, from a message on the socket to the action in the store, and what both cost, beside the
// least that a program can do. Ends with 1 when a bound is missed.
// usage: HostedRecogniserBenchmark [SECONDS]
#include <fmt/format.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "Clients/RemoteSpeechRecognitionClientImpl.hpp"
#include "MinimalBeastSender.hpp"
#include "ObservedSession.hpp"
#include "RecogniserProcess.hpp"
#include "features/RecordingFeature.hpp"
#include "platform/Deployment.hpp"
#include "runtime/MainQueue.hpp"
#include "runtime/Store.hpp"
#include "support/RecogniserMessages.hpp"

namespace {

using namespace vek;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Action = RecordingFeature::Action;

constexpr std::size_t framesOfABuffer = 1024;
constexpr std::size_t messagesPerResult = 24;  // about two a second
constexpr std::chrono::nanoseconds bufferTime{1'000'000'000LL * framesOfABuffer / 48000};
AudioFormat const format(AudioCommonFormat::pcmFormatInt16, 48000, 2, true);

double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto const seconds = [](timeval time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

std::int64_t now() {
  return Clock::now().time_since_epoch().count();
}

/// Answers each few messages with the time.
void answer(test::WebSocketPeer& peer) {
  peer.upgrade();
  for (std::size_t count = messagesPerResult;; count += messagesPerResult) {
    peer.waitForMessages(count);
    peer.text(test::partialMessage(std::to_string(now())));
  }
}

/// Calls `deliver` with a buffer as often as a microphone does.
template <class Deliver>
std::jthread audioQueue(Deliver deliver) {
  return std::jthread([deliver](std::stop_token const& stop) {
    auto const silence = std::vector<std::int16_t>(framesOfABuffer * 2, 1);
    for (auto next = Clock::now(); !stop.stop_requested(); next += bufferTime) {
      std::this_thread::sleep_until(next);
      deliver(std::make_shared<AudioPCMBuffer const>(format, silence));
    }
  });
}

/// Nanoseconds, in their order.
struct Times {
  std::vector<std::int64_t> handedOver;
  std::vector<std::int64_t> written;
  std::vector<std::int64_t> answered;
};

/// Notes when each piece has come to the reducer.
struct TimedFeature {
  using State = RecordingFeature::State;
  using Action = RecordingFeature::Action;

  [[nodiscard]] Effect<Action> reduce(State& state, Action const& action) const {
    if (auto const* internal = std::get_if<Action::internal>(&action.value)) {
      using Update = RecordingFeature::InternalAction::updateTranscript;
      if (auto const* update = std::get_if<Update>(&internal->action.value))
        times->answered.push_back(now() - std::stoll(update->piece.text));
    }
    return feature.reduce(state, action);
  }

  RecordingFeature feature;
  Times* times;
};

Task<NewTranscriptDTO> newTranscript() {
  co_return NewTranscriptDTO();
}
Task<> nothing() {
  co_return;
}

void replaceClients(DependencyValues& values, RecordingClient const& microphone, Times& times) {
  APIClient api;
  api.createTranscript = [](auto const&, auto const&) { return newTranscript(); };
  api.updateTranscript = [](std::string const&, UUID) { return nothing(); };
  values.set(apiClient, api);
  auto const remote = withDependencies(
      [&](DependencyValues& inner) { inner.set(recordingClient, microphone); },
      [&times] {
        return makeRemoteSpeechRecognitionClient(
            {.makeSession = test::observedSessions([&times] { times.written.push_back(now()); }),
             .captureDevice = {}});
      });
  SpeechRecognitionProvider provider;
  provider.startRecording = remote.startRecording;
  provider.stopRecording = remote.stopRecording;
  values.set(speechRcognitionProvider, provider);
}

/// Records for a while; gives the share of a core that it took.
double record(std::chrono::seconds duration, Times& times) {
  std::jthread speaker;
  RecordingClient const microphone{
      .startRecording =
          [&] {
            auto ends = RecordingClient::Buffers::makeStream();
            speaker = audioQueue([&times, buffers = std::move(ends.continuation)](auto buffer) {
              times.handedOver.push_back(now());
              buffers.yield(std::move(buffer));
            });
            return std::move(ends.stream);
          },
      .stopRecording = [&speaker] { speaker = {}; }};
  auto const store =
      withDependencies([&](DependencyValues& values) { replaceClients(values, microphone, times); },
                       [&times] {
                         return Store<RecordingFeature::State, Action>::make(
                             {}, [&times] { return TimedFeature{RecordingFeature(), &times}; });
                       });
  auto& main = MainQueue::shared();
  store->send(Action::recordButtonClicked{});
  main.runUntil([&] { return !times.answered.empty(); }, 50ms);

  auto const begin = Clock::now();
  auto const processorBegin = processorSeconds();
  main.runUntil([&] { return Clock::now() - begin >= duration; }, 100ms);
  auto const share = (processorSeconds() - processorBegin) /
                     std::chrono::duration<double>(Clock::now() - begin).count();
  auto const stopping = store->send(Action::recordButtonClicked{});
  main.runUntil([&] { return stopping.tasks()->isDone(); }, 50ms);
  return share;
}

double sendMinimally(std::chrono::seconds duration, test::RecogniserProcess const& server) {
  auto const sender =
      test::MinimalBeastSender::connect(server.port(), "/v1/listen", server.authority());
  auto const speaker = audioQueue([&sender](auto const& buffer) {
    auto const bytes = buffer->bytes();
    std::string message(bytes.size(), '\0');
    std::memcpy(message.data(), bytes.data(), bytes.size());
    sender->send(std::move(message));
  });
  auto const begin = Clock::now();
  auto const processorBegin = processorSeconds();
  std::this_thread::sleep_for(duration);
  return (processorSeconds() - processorBegin) /
         std::chrono::duration<double>(Clock::now() - begin).count();
}

double percentile(std::vector<std::int64_t> nanoseconds, double share) {
  if (nanoseconds.empty()) return -1;
  std::ranges::sort(nanoseconds);
  auto const last = static_cast<double>(nanoseconds.size() - 1);
  return static_cast<double>(nanoseconds[static_cast<std::size_t>(share * last)]) / 1e6;
}

bool reportLatency(char const* name, std::vector<std::int64_t> const& times, double bound) {
  auto const high = percentile(times, 0.99);
  fmt::print("{}: {:.3f} ms (median), {:.3f} ms (99%), {:.3f} ms (most) of {}; at most {} ms\n",
             name, percentile(times, 0.5), high, percentile(times, 1), times.size(), bound);
  return high >= 0 && high <= bound;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  std::chrono::seconds const duration(argumentCount > 1 ? std::strtol(arguments[1], nullptr, 10)
                                                        : 60);
  test::RecogniserProcess server(answer);
  test::RecogniserProcess const other(answer);
  MainQueue::shared();
  setDeployment({.recogniserURL = server.url(), .trustedAuthority = server.authority()});

  Times times;
  auto const share = record(duration, times);
  auto const taken = server.taken();
  auto const minimal = sendMinimally(duration, other);

  std::vector<std::int64_t> latencies;
  // The first buffers wait for the connection.
  for (std::size_t i = messagesPerResult; i < times.written.size(); ++i)
    latencies.push_back(times.written[i] - times.handedOver[i]);
  bool const isPromptOut = reportLatency("buffer to socket", latencies, 2);
  bool const isPromptIn = reportLatency("message to action", times.answered, 1);
  fmt::print("{} of {} buffers at the server, closed with {}\n",
             taken.bytes / (framesOfABuffer * 4), times.handedOver.size(), taken.closeCode);
  fmt::print("{:.2f}% of a core, {:.2f}% for the least that sends the same: {:.2f} times\n",
             100 * share, 100 * minimal, share / minimal);
  bool const isCheap = share <= 0.02 && share <= 1.3 * minimal;
  return isPromptOut && isPromptIn && isCheap ? EXIT_SUCCESS : EXIT_FAILURE;
}
