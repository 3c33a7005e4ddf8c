// SPDX-License-Identifier: MIT
// Eight hours of 48 kHz stereo, played as fast as a recogniser that answers takes them: every byte
// has to arrive, all in order, and memory has to stay flat. Ends with 1 when something is missed.
// usage: StreamingBenchmark [HOURS]
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <semaphore>
#include <vector>

#include "Clients/RemoteSpeechRecognitionClientImpl.hpp"
#include "ObservedSession.hpp"
#include "RecogniserProcess.hpp"
#include "platform/Deployment.hpp"
#include "runtime/SyncWait.hpp"
#include "runtime/ThreadPool.hpp"
#include "support/RecogniserMessages.hpp"

namespace {

using namespace vek;
using Clock = std::chrono::steady_clock;

constexpr std::uint64_t framesOfABuffer = 1024;
constexpr std::uint64_t buffersPerResult = 100;
constexpr std::uint64_t memorySamples = 50;
constexpr long mostGrowth = 4096;  // kilobytes
/// Buffers that the client holds at a time.
constexpr std::ptrdiff_t mostUnderWay = 64;

void answer(test::WebSocketPeer& peer) {
  peer.upgrade();
  for (std::uint64_t count = buffersPerResult;; count += buffersPerResult) {
    peer.waitForMessages(count);
    peer.text(test::finalMessage(std::to_string(count)));
  }
}

long residentKilobytes() {
  long total = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident * sysconf(_SC_PAGESIZE) / 1024;
}

/// What the audio queue and the reader share.
struct Run {
  std::counting_semaphore<> mayHandOver{mostUnderWay};
  std::atomic<std::uint64_t> written = 0;
  std::atomic<std::uint64_t> results = 0;
  std::atomic<bool> isInOrder = true;
};

Task<> read(Stream<RecordingTranscript> pieces, Run& run) {
  while (auto const piece = co_await pieces.next()) {
    auto const number = run.results += 1;
    if (piece->text != std::to_string(number * buffersPerResult)) run.isInOrder = false;
  }
}

/// A buffer that begins with its number.
std::shared_ptr<AudioPCMBuffer const> buffer(std::uint64_t number) {
  std::vector<std::int16_t> samples(framesOfABuffer * 2, 1);
  samples[0] = static_cast<std::int16_t>(number & 0xffffU);
  samples[1] = static_cast<std::int16_t>(number >> 16U);
  return std::make_shared<AudioPCMBuffer const>(
      AudioFormat(AudioCommonFormat::pcmFormatInt16, 48000, 2, true), std::move(samples));
}

}  // namespace

int main(int argumentCount, char** arguments) {
  double const hours = argumentCount > 1 ? std::strtod(arguments[1], nullptr) : 8;
  auto const count = std::max<std::uint64_t>(
      memorySamples, static_cast<std::uint64_t>(hours * 3600 * 48000) / framesOfABuffer);
  test::RecogniserProcess server(answer);
  setDeployment({.recogniserURL = server.url(), .trustedAuthority = server.authority()});
  Run run;
  auto microphone = RecordingClient::Buffers::makeStream();
  auto const client = withDependencies(
      [&](DependencyValues& values) {
        values.set(recordingClient,
                   {.startRecording = [&] { return microphone.stream; }, .stopRecording = [] {}});
      },
      [&run] {
        return makeRemoteSpeechRecognitionClient({.makeSession = test::observedSessions([&run] {
                                                    ++run.written;
                                                    run.mayHandOver.release();
                                                  }),
                                                  .captureDevice = {}});
      });
  auto const reading = spawn(ThreadPool::shared(), read(syncWait(client.startRecording()), run));

  auto const begin = Clock::now();
  std::vector<long> memory;
  for (std::uint64_t number = 0; number < count; ++number) {
    run.mayHandOver.acquire();
    microphone.continuation.yield(buffer(number));
    if (number % (count / memorySamples) == 0) memory.push_back(residentKilobytes());
  }
  auto const isAnswered = [&] {
    return run.written == count && run.results == count / buffersPerResult;
  };
  for (int i = 0; i < 1000 && !isAnswered(); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  syncWait(client.stopRecording());
  syncWait(reading.wait());
  auto const taken = server.taken();
  std::chrono::duration<double> const time = Clock::now() - begin;

  // The first tenth fills what is used again and again.
  auto const settled = memory.begin() + memorySamples / 10;
  auto const growth = *std::max_element(settled, memory.end()) - *settled;
  auto const bytes = count * framesOfABuffer * 4;
  fmt::print("{:.1f} h of audio in {:.0f} s: {} of {} bytes at the server, {}\n", hours,
             time.count(), taken.bytes, bytes, taken.isInOrder ? "in order" : "OUT OF ORDER");
  fmt::print("{} of {} results, {}; memory {} KiB, grown by {} KiB\n", run.results.load(),
             count / buffersPerResult, run.isInOrder ? "in order" : "OUT OF ORDER", *settled,
             growth);
  bool const isWhole = taken.bytes == bytes && taken.isInOrder && isAnswered() && run.isInOrder;
  return isWhole && growth <= mostGrowth ? EXIT_SUCCESS : EXIT_FAILURE;
}
