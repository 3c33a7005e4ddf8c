// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/AudioEngine.hpp"
#include "platform/AudioGraphEngine.hpp"
#include "platform/NotificationCenter.hpp"

namespace vek::test {

/// A microphone that the test speaks into. It outlives the engines that the client makes of it.
class FakeMicrophone {
 public:
  double sampleRate = 48000;
  std::uint32_t channels = 1;
  /// The text of the error that starts throw; none when they succeed.
  std::string failure;
  /// Runs at the end of each stop.
  std::function<void()> onStop;
  int engineCount = 0;

  void log(std::string call) {
    std::lock_guard lock(mutex_);
    calls_.push_back(std::move(call));
    changed_.notify_all();
  }
  /// What the engines were asked, in order, with their number in front, from the last such look up
  /// to the first call `last`; waits for that.
  std::vector<std::string> callsUntil(std::string const& last) {
    std::unique_lock lock(mutex_);
    auto const position = [&] { return std::ranges::find(calls_, last); };
    changed_.wait_for(lock, std::chrono::seconds(10), [&] { return position() != calls_.end(); });
    auto const end = position() == calls_.end() ? calls_.end() : position() + 1;
    std::vector<std::string> taken(calls_.begin(), end);
    calls_.erase(calls_.begin(), end);
    return taken;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> calls_;
};

class FakeAudioEngine final : public AudioGraphEngine, private AudioInputNode {
 public:
  explicit FakeAudioEngine(std::shared_ptr<FakeMicrophone> microphone)
      : microphone_(std::move(microphone)), number_(++microphone_->engineCount) {}
  ~FakeAudioEngine() override { log("gone"); }

  AudioInputNode& inputNode() override { return *this; }
  [[nodiscard]] bool isRunning() const override { return isRunning_; }

  void attachNode(std::shared_ptr<AudioMixerNode> node) override {
    log("attach");
    AudioGraphEngine::attachNode(std::move(node));
  }
  void detachNode(AudioMixerNode const& node) override {
    log("detach");
    AudioGraphEngine::detachNode(node);
  }
  void connect(AudioNode const& from, AudioNode const& to, AudioFormat const& format) override {
    log((&from == &inputNode() ? "connect input " : "connect mixer ") + text(format));
    AudioGraphEngine::connect(from, to, format);
  }
  void prepare() override { log("prepare with tap of " + std::to_string(bufferSize())); }
  void start() override {
    log("start");
    if (!microphone_->failure.empty()) throw std::runtime_error(microphone_->failure);
    isRunning_ = true;
  }
  void stop() override {
    log("stop");
    isRunning_ = false;
    if (microphone_->onStop) microphone_->onStop();
  }

  /// One frame of sound for each value, all channels alike, from a thread of the engine's.
  void speak(std::vector<std::int16_t> const& values) {
    AudioFormat const format(AudioCommonFormat::pcmFormatInt16, microphone_->sampleRate,
                             microphone_->channels, true);
    std::vector<std::int16_t> samples;
    for (auto const value : values) samples.insert(samples.end(), microphone_->channels, value);
    deliver(std::make_shared<AudioPCMBuffer>(format, std::move(samples)));
  }
  static void announceChange() {
    NotificationCenter::defaultCenter().post(AudioEngineConfigurationChangeNotification);
  }

 private:
  AudioFormat inputFormat(AudioNodeBus) override {
    return {AudioCommonFormat::pcmFormatFloat32, microphone_->sampleRate, microphone_->channels,
            true};
  }
  void removeTap(AudioNodeBus) override { log("remove input tap"); }

  static std::string text(AudioFormat const& format) {
    return (format.commonFormat() == AudioCommonFormat::pcmFormatInt16 ? "int16 " : "float32 ") +
           std::to_string(static_cast<int>(format.sampleRate())) + "x" +
           std::to_string(format.channelCount());
  }
  void log(std::string const& call) { microphone_->log(std::to_string(number_) + " " + call); }

  std::shared_ptr<FakeMicrophone> microphone_;
  int number_;
  std::atomic<bool> isRunning_ = false;
};

}  // namespace vek::test
