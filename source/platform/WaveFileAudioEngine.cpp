// SPDX-License-Identifier: MIT
#include "platform/WaveFileAudioEngine.hpp"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>
#include <vector>

#include "platform/AudioGraphEngine.hpp"
#include "platform/WaveFile.hpp"

namespace vek {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

constexpr microseconds maximumOutstanding = std::chrono::milliseconds(250);
constexpr int fastestSilence = 20;

/// Counts the audio that consumers hold. Outlives the engine while they do.
class Outstanding {
 public:
  explicit Outstanding(std::shared_ptr<WaveFilePlayback> playback)
      : playback_(std::move(playback)) {}

  enum class Kind : std::uint8_t { file, silence };

  void add(microseconds time) {
    std::lock_guard lock(mutex_);
    outstanding_ += time;
  }

  void remove(Kind kind, microseconds time) {
    {
      std::lock_guard lock(mutex_);
      outstanding_ -= time;
      (kind == Kind::file ? file_ : silence_) += time;
      report();
    }
    taken_.notify_one();
  }

  /// All of the file has been handed out, so long is it.
  void setFileLength(microseconds time) {
    std::lock_guard lock(mutex_);
    fileLength_ = time;
    report();
  }

  /// What is still out there counts no more, for another start may be using the handle.
  void end() {
    std::lock_guard lock(mutex_);
    playback_ = nullptr;
  }

  /// Waits until there is room for more and the time has come. False when told to stop.
  bool wait(std::stop_token const& stop, Clock::time_point time) {
    std::unique_lock lock(mutex_);
    taken_.wait(lock, stop, [this] { return outstanding_ < maximumOutstanding; });
    taken_.wait_until(lock, stop, time, [] { return false; });
    return !stop.stop_requested();
  }

 private:
  void report() {
    if (!playback_) return;
    playback_->setPlayed(file_);
    playback_->setSilencePlayed(silence_);
    if (fileLength_ && file_ >= *fileLength_) playback_->setHasPlayedFile();
  }

  std::shared_ptr<WaveFilePlayback> playback_;
  std::mutex mutex_;
  std::condition_variable_any taken_;
  microseconds outstanding_{};
  microseconds file_{};
  microseconds silence_{};
  std::optional<microseconds> fileLength_;
};

/// A buffer that tells when its last reader has let it go.
struct CountedBuffer {
  CountedBuffer(AudioPCMBuffer content, std::shared_ptr<Outstanding> counter,
                Outstanding::Kind kindOfAudio, microseconds length)
      : buffer(std::move(content)),
        outstanding(std::move(counter)),
        kind(kindOfAudio),
        time(length) {
    outstanding->add(time);
  }
  CountedBuffer(CountedBuffer const&) = delete;
  CountedBuffer& operator=(CountedBuffer const&) = delete;
  ~CountedBuffer() { outstanding->remove(kind, time); }

  AudioPCMBuffer buffer;
  std::shared_ptr<Outstanding> outstanding;
  Outstanding::Kind kind;
  microseconds time;
};

class WaveFileAudioEngine final : public AudioGraphEngine, private AudioInputNode {
 public:
  WaveFileAudioEngine(std::filesystem::path path, WaveFilePace pace,
                      std::shared_ptr<WaveFilePlayback> playback)
      : path_(std::move(path)), pace_(pace), playback_(std::move(playback)) {}
  ~WaveFileAudioEngine() override { stopPlaying(); }

  AudioInputNode& inputNode() override { return *this; }
  [[nodiscard]] bool isRunning() const override { return player_.joinable(); }

  void start() override {
    if (isRunning()) return;
    open();
    if (error_) std::rethrow_exception(error_);
    restartTime();
    playback_->begin(time(file_->frameCount()));
    outstanding_ = std::make_shared<Outstanding>(playback_);
    player_ = std::jthread([this](std::stop_token const& stop) { play(stop); });
  }

  void stop() override { stopPlaying(); }

 private:
  AudioFormat inputFormat(AudioNodeBus) override {
    open();
    if (error_) return {AudioCommonFormat::pcmFormatInt16, 0, 0, true};
    return file_->format();
  }
  void removeTap(AudioNodeBus) override {}

  void stopPlaying() {
    player_ = {};
    if (outstanding_) outstanding_->end();
    file_.reset();
    error_ = nullptr;
  }

  void open() {
    if (file_ || error_) return;
    try {
      file_.emplace(path_);
    } catch (WaveFileError const&) {
      error_ = std::current_exception();
    }
  }

  [[nodiscard]] microseconds time(std::uint64_t frames) const {
    return std::chrono::duration_cast<microseconds>(
        std::chrono::duration<double>(static_cast<double>(frames) / file_->format().sampleRate()));
  }

  void play(std::stop_token const& stop) {
    auto const format = file_->format();
    auto next = Clock::now();
    auto kind = Outstanding::Kind::file;
    microseconds fileTime{};
    while (outstanding_->wait(stop, next)) {
      std::vector<std::int16_t> samples(bufferSize() * format.channelCount());
      if (kind == Outstanding::Kind::file) {
        if (auto const count = file_->read(samples); count > 0) {
          samples.resize(count);
        } else {
          outstanding_->setFileLength(fileTime);
          kind = Outstanding::Kind::silence;
        }
      }
      auto const length = time(samples.size() / format.channelCount());
      if (kind == Outstanding::Kind::file) fileTime += length;
      auto const counted = std::make_shared<CountedBuffer>(
          AudioPCMBuffer(format, std::move(samples)), outstanding_, kind, length);
      deliver({counted, &counted->buffer});

      if (pace_ == WaveFilePace::realTime) {
        next += length;
      } else if (kind == Outstanding::Kind::silence) {
        next = Clock::now() + length / fastestSilence;
      }
    }
  }

  std::filesystem::path path_;
  WaveFilePace pace_;
  std::shared_ptr<WaveFilePlayback> playback_;
  std::optional<WaveFile> file_;
  std::exception_ptr error_;
  std::shared_ptr<Outstanding> outstanding_;
  std::jthread player_;
};

}  // namespace

AudioEngineFactory waveFileAudioEngineFactory(std::filesystem::path path, WaveFilePace pace,
                                              std::shared_ptr<WaveFilePlayback> playback) {
  return [path = std::move(path), pace, playback = std::move(playback)] {
    return std::make_shared<WaveFileAudioEngine>(path, pace, playback);
  };
}

}  // namespace vek
