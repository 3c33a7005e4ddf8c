// SPDX-License-Identifier: MIT
#include "Clients/RecordingClient.hpp"

#include <gmock/gmock.h>

#include <functional>
#include <future>
#include <mutex>
#include <thread>

#include "Clients/RecordingClientImpl.hpp"
#include "Clients/RemoteSpeechRecognitionError.hpp"
#include "platform/Log.hpp"
#include "support/CaptureRecorder.hpp"
#include "support/FakeAudioEngine.hpp"

namespace vek {
namespace {

using test::CaptureRecorder;
using test::FakeAudioEngine;
using test::FakeMicrophone;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using Samples = std::vector<std::int16_t>;
using namespace std::chrono_literals;

class RecordingClientTests : public testing::Test {
 protected:
  std::shared_ptr<RecordingClientImpl> makeClient() {
    return std::make_shared<RecordingClientImpl>([this] {
      auto engine = std::make_shared<FakeAudioEngine>(microphone_);
      engine_ = engine;
      return engine;
    });
  }

  void speak(Samples const& samples) const { engine_.lock()->speak(samples); }
  std::vector<std::string> callsUntil(std::string const& last) {
    return microphone_->callsUntil(last);
  }

  std::shared_ptr<FakeMicrophone> microphone_ = std::make_shared<FakeMicrophone>();
  std::weak_ptr<FakeAudioEngine> engine_;
  std::shared_ptr<RecordingClientImpl> client_ = makeClient();

  std::mutex logMutex_;
  std::vector<std::pair<LogLevel, std::string>> log_;
  LogRedirection redirection_{
      [this](LogLevel level, std::string_view category, std::string_view message) {
        EXPECT_EQ(category, "recorder");
        std::lock_guard lock(logMutex_);
        log_.emplace_back(level, message);
      },
      LogLevel::debug};
};

TEST_F(RecordingClientTests, StartBuildsTheGraphInOrder) {
  microphone_->sampleRate = 44100;
  microphone_->channels = 2;
  auto const stream = client_->startRecording();
  EXPECT_THAT(
      callsUntil("1 start"),
      ElementsAre("1 attach", "1 attach", "1 connect input float32 44100x2",
                  "1 connect mixer int16 44100x2", "1 prepare with tap of 1024", "1 start"));
}

TEST_F(RecordingClientTests, BuffersComeInOrderWithTheDevicesChannels) {
  microphone_->channels = 2;
  CaptureRecorder const recorder(client_->startRecording());
  speak({1, 2});
  speak({3});
  ASSERT_TRUE(recorder.waitForBuffers(2));
  EXPECT_THAT(recorder.samples(), ElementsAre(1, 1, 2, 2, 3, 3));
  EXPECT_EQ(recorder.buffers()[0]->format().channelCount(), 2U);
  EXPECT_FALSE(recorder.hasEnded());
}

TEST_F(RecordingClientTests, FailedStartEndsTheStreamAndLogsTheCause) {
  microphone_->failure = "no such device";
  CaptureRecorder const recorder(client_->startRecording());
  ASSERT_TRUE(recorder.waitForEnd());
  EXPECT_EQ(recorder.errorText(), "Audio engine error.");
  EXPECT_THAT(recorder.buffers(), IsEmpty());
  EXPECT_THAT(log_, ElementsAre(Pair(LogLevel::error, "engine couldn't start: no such device")));

  // The graph stays until the next start, which works with an engine of its own.
  callsUntil("1 start");
  microphone_->failure.clear();
  CaptureRecorder const second(client_->startRecording());
  EXPECT_THAT(callsUntil("2 start"),
              ElementsAre("1 gone", "2 detach", "2 detach", "2 attach", "2 attach",
                          "2 connect input float32 48000x1", "2 connect mixer int16 48000x1",
                          "2 prepare with tap of 1024", "2 start"));
  speak({7});
  EXPECT_TRUE(second.waitForBuffers(1));
}

TEST_F(RecordingClientTests, FailedStartKeepsListeningForDevicesUntilStop) {
  microphone_->failure = "no such device";
  auto const stream = client_->startRecording();
  callsUntil("1 start");
  FakeAudioEngine::announceChange();
  EXPECT_EQ(callsUntil("1 start").front(), "1 stop");

  client_->stopRecording();
  EXPECT_THAT(callsUntil("1 stop"), ElementsAre("1 detach", "1 detach", "1 stop"));
  FakeAudioEngine::announceChange();
  client_->shutDown();
  EXPECT_THAT(callsUntil("1 stop"), ElementsAre("1 stop"));
}

TEST_F(RecordingClientTests, StopLeavesTheStreamOpenAndTheNextOneHasItsOwnBuffers) {
  CaptureRecorder const first(client_->startRecording());
  speak({1});
  ASSERT_TRUE(first.waitForBuffers(1));
  client_->stopRecording();
  EXPECT_THAT(callsUntil("1 stop"),
              ElementsAre("1 attach", "1 attach", "1 connect input float32 48000x1",
                          "1 connect mixer int16 48000x1", "1 prepare with tap of 1024", "1 start",
                          "1 detach", "1 detach", "1 stop"));
  speak({2});  // nobody taps the engine any more

  CaptureRecorder const second(client_->startRecording());
  speak({3});
  ASSERT_TRUE(second.waitForBuffers(1));
  EXPECT_THAT(second.samples(), ElementsAre(3));
  EXPECT_THAT(first.samples(), ElementsAre(1));
  EXPECT_FALSE(first.hasEnded());
}

TEST_F(RecordingClientTests, StartWhileCapturingTakesTheMicrophoneFromTheOldStream) {
  CaptureRecorder const first(client_->startRecording());
  auto const oldEngine = engine_.lock();
  CaptureRecorder const second(client_->startRecording());
  oldEngine->speak({1});
  speak({2});
  ASSERT_TRUE(second.waitForBuffers(1));
  client_->shutDown();
  EXPECT_THAT(second.samples(), ElementsAre(2));
  EXPECT_THAT(first.buffers(), IsEmpty());
}

TEST_F(RecordingClientTests, BuffersQueuedBeforeAStopAreStillDelivered) {
  CaptureRecorder const recorder(client_->startRecording());
  // The engine's thread is ahead of the queue, which waits in the middle of a device change.
  std::promise<void> mayGoOn;
  microphone_->onStop = [waiting = mayGoOn.get_future().share()] { waiting.wait(); };
  FakeAudioEngine::announceChange();
  speak({1});
  speak({2});
  client_->stopRecording();
  EXPECT_THAT(recorder.buffers(), IsEmpty());
  mayGoOn.set_value();
  ASSERT_TRUE(recorder.waitForBuffers(2));
  EXPECT_THAT(recorder.samples(), ElementsAre(1, 2));
}

TEST_F(RecordingClientTests, DeviceChangeKeepsTheStreamAndTakesTheNewFormat) {
  CaptureRecorder const recorder(client_->startRecording());
  speak({1});
  callsUntil("1 start");
  microphone_->sampleRate = 16000;
  microphone_->channels = 2;
  FakeAudioEngine::announceChange();
  EXPECT_THAT(
      callsUntil("1 start"),
      ElementsAre("1 stop", "1 remove input tap", "1 detach", "1 detach", "1 attach", "1 attach",
                  "1 connect input float32 16000x2", "1 connect mixer int16 16000x2",
                  "1 prepare with tap of 1024", "1 start"));
  speak({2});
  ASSERT_TRUE(recorder.waitForBuffers(2));
  EXPECT_THAT(recorder.samples(), ElementsAre(1, 2, 2));
  EXPECT_EQ(recorder.buffers()[1]->format().sampleRate(), 16000);
  EXPECT_THAT(log_, ElementsAre(Pair(LogLevel::debug,
                                     "Audio device changed: "
                                     "AudioEngineConfigurationChangeNotification")));
}

TEST_F(RecordingClientTests, FailedRestartEndsTheStreamWithThePlatformsErrorBehindItsBuffers) {
  CaptureRecorder const recorder(client_->startRecording());
  speak({1});
  microphone_->failure = "unplugged";
  FakeAudioEngine::announceChange();
  ASSERT_TRUE(recorder.waitForEnd());
  EXPECT_EQ(recorder.errorText(), "unplugged");
  EXPECT_THAT(recorder.samples(), ElementsAre(1));
  EXPECT_EQ(log_.back(),
            std::pair(LogLevel::error, std::string("device did change but engine couldn't start: "
                                                   "unplugged")));

  microphone_->failure.clear();
  CaptureRecorder const second(client_->startRecording());
  speak({2});
  EXPECT_TRUE(second.waitForBuffers(1));
}

TEST_F(RecordingClientTests, StopBeforeAnyStartDoesNothingButStopAnEngine) {
  client_->stopRecording();
  client_->shutDown();
  EXPECT_THAT(callsUntil("1 stop"), ElementsAre("1 stop"));
}

TEST_F(RecordingClientTests, AnEngineThatCannotBeMadeEndsTheStream) {
  auto const client = makeRecordingClient(
      []() -> std::shared_ptr<AudioEngine> { throw std::runtime_error("out of engines"); });
  CaptureRecorder const recorder(client.startRecording());
  ASSERT_TRUE(recorder.waitForEnd());
  EXPECT_EQ(recorder.errorText(), "out of engines");
}

TEST_F(RecordingClientTests, QueuedWorkMayHoldTheLastReferenceToTheClient) {
  auto const stream = client_->startRecording();
  std::promise<void> mayGoOn;
  microphone_->onStop = [waiting = mayGoOn.get_future().share()] { waiting.wait(); };
  client_->stopRecording();
  callsUntil("1 stop");
  client_ = nullptr;
  mayGoOn.set_value();
  EXPECT_THAT(callsUntil("1 gone"), ElementsAre("1 gone"));
}

TEST_F(RecordingClientTests, ClientsMayGoWhileTheirEngineSpeaks) {
  for (int i = 0; i < 50; ++i) {
    auto client = makeClient();
    CaptureRecorder const recorder(client->startRecording());
    std::jthread const microphone([engine = engine_.lock()](std::stop_token const& stop) {
      while (!stop.stop_requested()) engine->speak({1, 2, 3});
    });
    ASSERT_TRUE(recorder.waitForBuffers(2));
    FakeAudioEngine::announceChange();
    if (i % 2 == 0) client->stopRecording();
    client = nullptr;
  }
}

TEST(RemoteSpeechRecognitionErrorTests, AreEqualByCaseAndSayWhatTheUserReads) {
  using Error = RemoteSpeechRecognitionError;
  EXPECT_EQ(Error(Error::audioEngineError), Error(Error::audioEngineError));
  EXPECT_NE(Error(Error::audioEngineError), Error(Error::programmerError));
  EXPECT_STREQ(Error(Error::programmerError).what(),
               "Fatal error. Please report this to the developer.");
  EXPECT_STREQ(Error(Error::authorizationDenied).what(),
               "Authorization denied. \nOpen System Settings > Privacy & Security > Microphone and "
               "enable it.");
}

}  // namespace
}  // namespace vek
