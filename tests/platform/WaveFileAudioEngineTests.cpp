// SPDX-License-Identifier: MIT
#include "platform/WaveFileAudioEngine.hpp"

#include <gmock/gmock.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <numeric>
#include <thread>

#include "platform/WaveFile.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/WaveBytes.hpp"

namespace vek {
namespace {

using test::WaveBytes;
using Buffer = std::shared_ptr<AudioPCMBuffer const>;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

/// What the tap has given and the test has not yet taken.
class Tap {
 public:
  AudioTapBlock block() {
    return [this](Buffer buffer, AudioTime) {
      std::lock_guard lock(mutex_);
      buffers_.push_back(std::move(buffer));
      changed_.notify_all();
    };
  }
  Buffer take() {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, 10s, [this] { return !buffers_.empty(); })) return nullptr;
    auto buffer = std::move(buffers_.front());
    buffers_.pop_front();
    return buffer;
  }
  std::chrono::microseconds held() {
    std::lock_guard lock(mutex_);
    std::size_t frames = 0;
    for (auto const& buffer : buffers_) frames += buffer->frameLength();
    return std::chrono::microseconds(frames * 1'000'000 / 16000);
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Buffer> buffers_;
};

class WaveFileAudioEngineTests : public testing::Test {
 protected:
  /// An engine over a file whose samples count up from 1.
  void play(std::size_t sampleCount, WaveFilePace pace) {
    std::vector<std::int16_t> samples(sampleCount);
    std::iota(samples.begin(), samples.end(), std::int16_t{1});
    std::string data(samples.size() * 2, '\0');
    std::memcpy(data.data(), samples.data(), data.size());
    WaveBytes{.data = data}.write(path_);
    engine_ = waveFileAudioEngineFactory(path_, pace, playback_)();
    connect();
    engine_->start();
  }
  void connect() {
    auto const format = engine_->inputNode().inputFormat(0);
    engine_->attachNode(converter_);
    engine_->attachNode(sink_);
    engine_->connect(engine_->inputNode(), *converter_, format);
    engine_->connect(*converter_, *sink_, format);
    converter_->installTap(0, 1024, format, tap_.block());
  }

  test::TemporaryFolder folder_;
  std::filesystem::path path_ = folder_ / "speech.wav";
  std::shared_ptr<WaveFilePlayback> playback_ = std::make_shared<WaveFilePlayback>();
  std::shared_ptr<AudioMixerNode> converter_ = std::make_shared<AudioMixerNode>();
  std::shared_ptr<AudioMixerNode> sink_ = std::make_shared<AudioMixerNode>();
  Tap tap_;
  std::shared_ptr<AudioEngine> engine_;
};

TEST_F(WaveFileAudioEngineTests, PlaysTheFileAndThenSilenceUntilStopped) {
  play(2500, WaveFilePace::asTaken);
  EXPECT_EQ(playback_->duration(), 156'250us);
  std::vector<std::int16_t> heard;
  while (heard.size() < 2500 + 4096) {
    auto const buffer = tap_.take();
    ASSERT_TRUE(buffer);
    heard.insert(heard.end(), buffer->samples().begin(), buffer->samples().end());
  }
  for (std::size_t i = 0; i < heard.size(); ++i) {
    ASSERT_EQ(heard[i], i < 2500 ? static_cast<std::int16_t>(i + 1) : 0) << i;
  }
  EXPECT_TRUE(playback_->hasPlayedFile());
  EXPECT_LT(std::chrono::abs(playback_->duration() - playback_->played()), 10us);
  EXPECT_GE(playback_->silencePlayed(), 255ms);
  engine_->stop();
  EXPECT_FALSE(engine_->isRunning());
}

TEST_F(WaveFileAudioEngineTests, WaitsForTheConsumer) {
  play(16000, WaveFilePace::asTaken);
  auto const deadline = Clock::now() + 10s;
  while (tap_.held() < 250ms && Clock::now() < deadline) std::this_thread::sleep_for(1ms);
  std::this_thread::sleep_for(50ms);
  EXPECT_GE(tap_.held(), 250ms);
  EXPECT_LT(tap_.held(), 250ms + 64ms);
  EXPECT_EQ(playback_->played(), 0us);
  EXPECT_FALSE(playback_->hasPlayedFile());
  engine_->stop();  // while it waits
}

TEST_F(WaveFileAudioEngineTests, RealTimeAndSilenceHaveTheirPace) {
  play(4096, WaveFilePace::realTime);
  auto begin = Clock::now();
  for (int i = 0; i < 4; ++i) ASSERT_TRUE(tap_.take());
  EXPECT_GE(Clock::now() - begin, 180ms);  // three buffers after the first
  engine_->stop();

  play(1024, WaveFilePace::asTaken);
  begin = Clock::now();
  while (playback_->silencePlayed() < 2s) ASSERT_TRUE(tap_.take());
  EXPECT_GE(Clock::now() - begin, 90ms);
}

TEST_F(WaveFileAudioEngineTests, AnotherStartPlaysFromTheBeginning) {
  play(1500, WaveFilePace::asTaken);
  auto const late = tap_.take();
  engine_->stop();
  while (tap_.held() > 0us) tap_.take();
  engine_->start();
  EXPECT_FALSE(playback_->hasPlayedFile());
  auto const buffer = tap_.take();
  ASSERT_TRUE(buffer);
  EXPECT_EQ(buffer->samples()[0], 1);
}

TEST_F(WaveFileAudioEngineTests, StartThrowsWhyTheFileCannotBePlayed) {
  engine_ = waveFileAudioEngineFactory(folder_ / "none.wav", WaveFilePace::asTaken)();
  EXPECT_EQ(engine_->inputNode().inputFormat(0).channelCount(), 0U);
  connect();
  EXPECT_THROW(engine_->start(), WaveFileError);
  EXPECT_FALSE(engine_->isRunning());
  engine_->stop();
}

}  // namespace
}  // namespace vek
