// SPDX-License-Identifier: MIT
// Capture through a real sound server of its own: a minute of 48 kHz stereo sample for sample, what
// that costs, and a default microphone that changes 20 times. Ends with 1 when a bound is missed.
// usage: CaptureBenchmark [SECONDS]
#include <fmt/format.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "Clients/RecordingClientImpl.hpp"
#include "platform/PulseAudioEngine.hpp"
#include "support/CaptureRecorder.hpp"
#include "support/SoundServer.hpp"

namespace {

using namespace std::chrono_literals;
using vek::AudioPCMBuffer;
using vek::test::CaptureRecorder;
using vek::test::MicrophonePipe;
using vek::test::SoundServer;
using Clock = std::chrono::steady_clock;
using Samples = std::vector<std::int16_t>;

constexpr std::size_t sampleRate = 48000;
constexpr std::size_t channels = 2;
constexpr double mostOfACore = 1.5;  // percent
constexpr int switches = 20;

double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto const seconds = [](timeval time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double since(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

Samples noise(std::size_t count) {
  Samples samples(count);
  std::uint32_t state = 1;
  std::ranges::generate(samples, [&state] {
    state = state * 1664525U + 1013904223U;
    return static_cast<std::int16_t>(state >> 16 | 1);
  });
  return samples;
}

/// Plays noise to a speaker and captures it from there.
bool capturesExactly(std::size_t seconds) {
  SoundServer const server;
  server.load("module-null-sink sink_name=speaker norewinds=1 format=s16le rate=48000 channels=2");
  server.load("module-remap-source source_name=microphone master=speaker.monitor");
  server.pactl("set-default-source microphone");
  auto const played = noise(seconds * sampleRate * channels);
  auto const file = server.path("noise").string();
  std::ofstream(file, std::ios::binary)
      // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the samples as a file.
      .write(reinterpret_cast<char const*>(played.data()),
             static_cast<std::streamsize>(played.size() * sizeof(std::int16_t)));

  auto const client = vek::makeRecordingClient(vek::pulseAudioEngineFactory(server.address()));
  CaptureRecorder const recorder(client.startRecording());
  std::thread player([&] {
    auto const command = fmt::format(
        "pacat -s {} --playback --raw --format=s16le --rate=48000 --channels=2 --device=speaker "
        "--latency-msec=2000 {}",
        server.address(), file);
    if (std::system(command.c_str()) != 0) fmt::print("failed: {}\n", command);
  });
  auto const begin = Clock::now();
  auto const processorBegin = processorSeconds();
  std::this_thread::sleep_for(std::chrono::seconds(seconds));
  auto const load = 100 * (processorSeconds() - processorBegin) / since(begin);
  player.join();
  std::this_thread::sleep_for(500ms);
  client.stopRecording();

  auto const captured = recorder.samples();
  auto const first = std::ranges::find_if(captured, [](auto sample) { return sample != 0; });
  auto const length = std::min(played.size(), static_cast<std::size_t>(captured.end() - first));
  auto const same = std::mismatch(played.begin(), played.end(), first, captured.end()).first;
  auto const exact = static_cast<std::size_t>(same - played.begin());
  fmt::print("{} s of 48 kHz stereo: {} of {} frames exact in one piece, {:.2f}% of a core\n",
             seconds, exact / channels, length / channels, load);
  return exact == played.size() && load <= mostOfACore;
}

/// A microphone that counts: its samples tell what is lost, and their sign whose they are.
class CountingMicrophone {
 public:
  CountingMicrophone(SoundServer const& server, std::string const& name, int sign)
      : thread_([pipe = std::make_shared<MicrophonePipe>(server.path(name)),
                 sign](std::stop_token const& stop) {
          constexpr int framesPerBlock = 480;
          for (int count = 0; !stop.stop_requested(); std::this_thread::sleep_for(10ms)) {
            Samples block;
            for (int i = 0; i < framesPerBlock; ++i) {
              auto const value = 1 + (count + i) % period;
              block.insert(block.end(), channels, static_cast<std::int16_t>(sign * value));
            }
            if (pipe->offer(block)) count += framesPerBlock;
          }
        }) {}

  static constexpr int period = 32000;

 private:
  std::jthread thread_;
};

/// The breaks within what one device gave without a change, and its samples of the other's sign.
struct Faults {
  int lost = 0;
  int foreign = 0;
};
Faults faults(std::vector<CaptureRecorder::Buffer> const& buffers, double rateOfOne) {
  Faults found;
  double rate = 0;
  int previous = 0;
  for (auto const& buffer : buffers) {
    bool const isFirst = buffer->format().sampleRate() != rate;
    rate = buffer->format().sampleRate();
    auto const sign = rate == rateOfOne ? 1 : -1;
    if (isFirst) previous = 0;
    for (std::size_t i = 0; i < buffer->samples().size(); i += channels) {
      auto const value = sign * buffer->samples()[i];
      if (value <= 0) ++found.foreign;
      if (previous != 0 && value != previous % CountingMicrophone::period + 1) ++found.lost;
      previous = value;
    }
  }
  return found;
}

bool followsTheDefault() {
  SoundServer const server;
  server.loadPipeMicrophone("one", 48000, 2);
  server.loadPipeMicrophone("two", 44100, 2);
  server.pactl("set-default-source one");
  CountingMicrophone const one(server, "one", 1);
  CountingMicrophone const two(server, "two", -1);
  auto const client = vek::makeRecordingClient(vek::pulseAudioEngineFactory(server.address()));
  CaptureRecorder const recorder(client.startRecording());
  auto const hasRate = [](double rate) {
    return [rate](AudioPCMBuffer const& buffer) { return buffer.format().sampleRate() == rate; };
  };
  if (!recorder.waitForBuffer(hasRate(48000))) return false;

  std::vector<double> pauses;
  for (int i = 1; i <= switches; ++i) {
    std::this_thread::sleep_for(200ms);
    bool const toTwo = i % 2 == 1;
    server.pactl(toTwo ? "set-default-source two" : "set-default-source one");
    auto const begin = Clock::now();
    if (!recorder.waitForBuffer(hasRate(toTwo ? 44100 : 48000))) {
      fmt::print("the capture did not follow switch {}\n", i);
      return false;
    }
    pauses.push_back(1000 * since(begin));
  }
  client.stopRecording();

  auto const [lost, foreign] = faults(recorder.buffers(), 48000);
  std::ranges::sort(pauses);
  fmt::print(
      "default switched {} times: {} frames of the wrong device, {} breaks within a device; "
      "first buffer of the new one after {:.0f} ms (median), {:.0f} ms (most)\n",
      switches, foreign, lost, pauses[pauses.size() / 2], pauses.back());
  return lost == 0 && foreign == 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  auto const seconds =
      argumentCount > 1 ? std::strtoul(arguments[1], nullptr, 10) : std::size_t{60};
  bool const isExact = capturesExactly(seconds);
  bool const follows = followsTheDefault();
  return isExact && follows ? EXIT_SUCCESS : EXIT_FAILURE;
}
