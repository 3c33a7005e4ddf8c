// SPDX-License-Identifier: MIT
// The recording client with the real engine, against real sound servers.
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <mutex>
#include <thread>

#include "Clients/RecordingClientImpl.hpp"
#include "platform/Log.hpp"
#include "platform/PulseAudioEngine.hpp"
#include "support/CaptureRecorder.hpp"
#include "support/SoundServer.hpp"

namespace vek {
namespace {

using test::CaptureRecorder;
using test::MicrophonePipe;
using test::SoundServer;
using testing::Each;
using testing::Gt;
using testing::HasSubstr;
using testing::Lt;
using Samples = std::vector<std::int16_t>;
using namespace std::chrono_literals;

constexpr std::size_t framesPerBuffer = 1024;

/// Samples of which no two stretches are alike.
Samples noise(std::size_t count) {
  Samples samples(count);
  std::uint32_t state = 1;
  std::ranges::generate(samples, [&state] {
    state = state * 1664525U + 1013904223U;
    return static_cast<std::int16_t>(state >> 16);
  });
  return samples;
}

/// Says one value to a microphone for as long as it lives, as much of it as is listened to.
class Speaker {
 public:
  Speaker(std::filesystem::path const& path, std::int16_t value)
      : thread_([pipe = std::make_shared<MicrophonePipe>(path),
                 block = Samples(960, value)](std::stop_token const& stop) {
          while (!stop.stop_requested()) {
            pipe->offer(block);
            std::this_thread::sleep_for(10ms);
          }
        }) {}

 private:
  std::jthread thread_;
};

auto hasFormat(double sampleRate, std::uint32_t channels) {
  return [=](AudioPCMBuffer const& buffer) {
    return buffer.format().sampleRate() == sampleRate && buffer.format().channelCount() == channels;
  };
}

/// The samples of all buffers that satisfy the predicate.
template <class Predicate>
Samples samplesOf(CaptureRecorder const& recorder, Predicate predicate) {
  Samples all;
  for (auto const& buffer : recorder.buffers()) {
    if (!predicate(*buffer)) continue;
    all.insert(all.end(), buffer->samples().begin(), buffer->samples().end());
  }
  return all;
}

class CaptureTests : public testing::Test {
 protected:
  explicit CaptureTests(SoundServer::Kind kind = SoundServer::Kind::pulseAudio) : server_(kind) {}

  void setDefault(std::string const& source) const {
    server_.pactl("set-default-source " + source);
    while (server_.pactl("get-default-source") != source) std::this_thread::sleep_for(10ms);
  }
  std::string errorLog() {
    std::lock_guard lock(logMutex_);
    return errorLog_;
  }

  void failsToStart(std::string const& cause) {
    CaptureRecorder const recorder(client_.startRecording());
    ASSERT_TRUE(recorder.waitForEnd());
    EXPECT_EQ(recorder.errorText(), "Audio engine error.");
    EXPECT_EQ(recorder.bufferCount(), 0U);
    EXPECT_THAT(errorLog(), HasSubstr("engine couldn't start: " + cause));
  }

  SoundServer server_;
  std::mutex logMutex_;
  std::string errorLog_;
  LogRedirection redirection_{[this](LogLevel, std::string_view, std::string_view message) {
                                std::lock_guard lock(logMutex_);
                                errorLog_.append(message).append("\n");
                              },
                              LogLevel::error};
  RecordingClient client_ = makeRecordingClient(pulseAudioEngineFactory(server_.address()));
};

TEST_F(CaptureTests, GivesWhatIsSpokenSampleForSample) {
  server_.loadPipeMicrophone("stereo", 44100, 2);
  CaptureRecorder const recorder(client_.startRecording());
  constexpr std::size_t bufferCount = 130;  // 3 seconds
  auto const spoken = noise(2 * framesPerBuffer * bufferCount);
  MicrophonePipe(server_.path("stereo")).speak(spoken);

  ASSERT_TRUE(recorder.waitForBuffers(bufferCount)) << recorder.bufferCount();
  EXPECT_TRUE(std::ranges::all_of(recorder.buffers(), [](auto const& buffer) {
    return buffer->frameLength() == framesPerBuffer && hasFormat(44100, 2)(*buffer);
  }));
  EXPECT_TRUE(std::ranges::equal(recorder.samples(), spoken));
  EXPECT_FALSE(recorder.hasEnded());
}

TEST_F(CaptureTests, FollowsTheDefaultWithoutAFrameOfTheWrongDevice) {
  server_.loadPipeMicrophone("one", 48000, 2);
  server_.loadPipeMicrophone("two", 16000, 1);
  Speaker const speakerOne(server_.path("one"), 1);
  Speaker const speakerTwo(server_.path("two"), 2);
  setDefault("one");
  CaptureRecorder const recorder(client_.startRecording());
  ASSERT_TRUE(recorder.waitForBuffer(hasFormat(48000, 2)));
  setDefault("two");
  ASSERT_TRUE(recorder.waitForBuffer(hasFormat(16000, 1)));
  setDefault("one");
  ASSERT_TRUE(recorder.waitForBuffer(hasFormat(48000, 2)));

  EXPECT_THAT(samplesOf(recorder, hasFormat(48000, 2)), Each(1));
  EXPECT_THAT(samplesOf(recorder, hasFormat(16000, 1)), Each(2));
  EXPECT_FALSE(recorder.hasEnded());
  EXPECT_EQ(errorLog(), "");
}

TEST_F(CaptureTests, RunsInRealTimeAndLeavesNothingAtTheServer) {
  server_.load("module-null-sink sink_name=speaker norewinds=1 rate=48000 channels=2");
  server_.load("module-remap-source source_name=microphone master=speaker.monitor");
  setDefault("microphone");
  CaptureRecorder const recorder(client_.startRecording());
  EXPECT_THAT(server_.pactl("list clients"), HasSubstr("\"VEK\""));
  auto const begin = std::chrono::steady_clock::now();
  ASSERT_TRUE(recorder.waitForBuffers(30));  // 0.64 s of sound
  EXPECT_GT(std::chrono::steady_clock::now() - begin, 300ms);
  EXPECT_THAT(recorder.samples(), Each(0));

  client_.stopRecording();
  auto const deadline = std::chrono::steady_clock::now() + 10s;
  while (server_.pactl("list clients").find("\"VEK\"") != std::string::npos) {
    ASSERT_LT(std::chrono::steady_clock::now(), deadline);
    std::this_thread::sleep_for(10ms);
  }
}

TEST_F(CaptureTests, UnpluggedMicrophoneGivesWayToAnother) {
  auto const one = server_.loadPipeMicrophone("one", 48000, 2);
  server_.loadPipeMicrophone("two", 16000, 1);
  setDefault("one");
  CaptureRecorder const recorder(client_.startRecording());
  {
    Speaker const speaker(server_.path("one"), 1);
    ASSERT_TRUE(recorder.waitForBuffer(hasFormat(48000, 2)));
  }
  server_.unload(one);
  Speaker const speaker(server_.path("two"), 2);
  ASSERT_TRUE(recorder.waitForBuffer(hasFormat(16000, 1)));
  EXPECT_THAT(samplesOf(recorder, hasFormat(48000, 2)), Each(1));
  EXPECT_THAT(samplesOf(recorder, hasFormat(16000, 1)), Each(2));
}

TEST_F(CaptureTests, TheOnlyMicrophoneMayBePluggedInAgain) {
  auto const first = server_.loadPipeMicrophone("one", 48000, 2);
  CaptureRecorder const recorder(client_.startRecording());
  server_.unload(first);
  std::this_thread::sleep_for(200ms);
  server_.loadPipeMicrophone("again", 32000, 1);
  Speaker const speaker(server_.path("again"), 3);
  ASSERT_TRUE(recorder.waitForBuffer(hasFormat(32000, 1)));
  EXPECT_FALSE(recorder.hasEnded());
}

TEST_F(CaptureTests, WithoutAnyMicrophoneForTenSecondsTheStreamEndsWithTheCause) {
  auto const only = server_.loadPipeMicrophone("one", 48000, 2);
  server_.load("module-null-sink");
  CaptureRecorder const recorder(client_.startRecording());
  auto const begin = std::chrono::steady_clock::now();
  server_.unload(only);
  ASSERT_TRUE(recorder.waitForEnd(30s));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 9s);
  EXPECT_THAT(recorder.errorText(), HasSubstr("No microphone was found."));
  EXPECT_THAT(errorLog(), HasSubstr("device did change but engine couldn't start: No microphone"));
}

TEST_F(CaptureTests, OutlivesTheServersDeath) {
  server_.loadPipeMicrophone("one", 48000, 2);
  CaptureRecorder const recorder(client_.startRecording());
  {
    Speaker const speaker(server_.path("one"), 1);
    ASSERT_TRUE(recorder.waitForBuffer(hasFormat(48000, 2)));
  }
  server_.kill();
  std::this_thread::sleep_for(700ms);
  EXPECT_FALSE(recorder.hasEnded());
  server_.start();
  server_.loadPipeMicrophone("two", 44100, 1);
  Speaker const speaker(server_.path("two"), 2);
  ASSERT_TRUE(recorder.waitForBuffer(hasFormat(44100, 1)));
  EXPECT_THAT(samplesOf(recorder, hasFormat(44100, 1)), Each(2));
  EXPECT_FALSE(recorder.hasEnded());
}

TEST_F(CaptureTests, StopsWhileTheServerIsGone) {
  server_.loadPipeMicrophone("one", 48000, 2);
  auto const client =
      std::make_shared<RecordingClientImpl>(pulseAudioEngineFactory(server_.address()));
  CaptureRecorder const recorder(client->startRecording());
  server_.kill();
  client->shutDown();
  EXPECT_FALSE(recorder.hasEnded());
}

TEST_F(CaptureTests, NoMicrophone) {
  failsToStart("No microphone was found.");
}

TEST_F(CaptureTests, WhatTheSpeakersPlayIsNoMicrophone) {
  server_.load("module-null-sink");
  failsToStart("No microphone was found.");
}

TEST_F(CaptureTests, NoSoundServer) {
  server_.kill();
  failsToStart("No sound server could be reached. (");
}

TEST_F(CaptureTests, AServerThatNeverAnswersIsGivenUp) {
  server_.kill();
  auto const silent = server_.path("pulse/native").string();
  unlink(silent.c_str());
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  std::strncpy(address.sun_path, silent.c_str(), sizeof address.sun_path - 1);
  int const listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how sockets are addressed.
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener, 1), 0);
  failsToStart("The sound server did not answer in time.");
  close(listener);
}

class PipeWireCaptureTests : public CaptureTests {
 protected:
  PipeWireCaptureTests() : CaptureTests(SoundServer::Kind::pipeWire) {}
};

TEST_F(PipeWireCaptureTests, GivesWhatIsSpokenSampleForSample) {
  server_.loadPipeMicrophone("stereo", 48000, 2);
  setDefault("stereo");
  CaptureRecorder const recorder(client_.startRecording());
  auto const spoken = noise(std::size_t{2} * 48000);
  MicrophonePipe const pipe(server_.path("stereo"));
  pipe.speak(spoken);
  pipe.speak(Samples(48000));
  // This server's pipe plays in real time, with silence before what is spoken.
  ASSERT_TRUE(recorder.waitForBuffers(recorder.bufferCount() + 30));
  auto const captured = recorder.samples();
  auto const first = std::ranges::find_if(captured, [](auto sample) { return sample != 0; });
  ASSERT_GE(static_cast<std::size_t>(captured.end() - first), spoken.size());
  EXPECT_TRUE(std::equal(spoken.begin(), spoken.end(), first));
}

TEST_F(PipeWireCaptureTests, UnpluggedMicrophoneGivesWayToAnother) {
  auto const one = server_.loadPipeMicrophone("one", 48000, 2);
  server_.loadPipeMicrophone("two", 16000, 1);
  setDefault("one");
  Speaker const speakerTwo(server_.path("two"), -8000);
  CaptureRecorder const recorder(client_.startRecording());
  {
    Speaker const speakerOne(server_.path("one"), 8000);
    ASSERT_TRUE(recorder.waitForBuffer(hasFormat(48000, 2)));
  }
  server_.unload(one);
  ASSERT_TRUE(recorder.waitForBuffer(hasFormat(16000, 1)));

  // This server ramps up from silence, and swings a little where it resamples.
  EXPECT_THAT(samplesOf(recorder, hasFormat(48000, 2)), Each(Gt(-2000)));
  EXPECT_THAT(samplesOf(recorder, hasFormat(16000, 1)), Each(Lt(2000)));
  EXPECT_FALSE(recorder.hasEnded());
  EXPECT_EQ(errorLog(), "");
}

TEST_F(PipeWireCaptureTests, WhatTheSpeakersPlayIsNoMicrophone) {
  failsToStart("No microphone was found.");
}

}  // namespace
}  // namespace vek
