// SPDX-License-Identifier: MIT
#include "platform/PulseAudioEngine.hpp"

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include "platform/AudioEngineError.hpp"
#include "platform/AudioGraphEngine.hpp"
#include "platform/NotificationCenter.hpp"
#include "platform/PulseAudioSession.hpp"

namespace vek {

namespace {

/// Opens a session with the server when the input's format is asked for, since only then there is
/// something to build a graph for, and ends it with `stop`.
class PulseAudioEngine final : public AudioGraphEngine,
                               private AudioInputNode,
                               private PulseAudioSession::Observer {
 public:
  explicit PulseAudioEngine(std::string server) : server_(std::move(server)) {}

  AudioInputNode& inputNode() override { return *this; }
  [[nodiscard]] bool isRunning() const override { return session_ && session_->isCapturing(); }

  void start() override {
    open();
    if (error_) std::rethrow_exception(error_);
    auto const node = fedNode();
    if (!node || node->outputFormat(0) != captureFormat_) {
      throw AudioEngineError(AudioEngineError::Reason::captureFailed,
                             "the graph is not built for the microphone's format");
    }
    restartTime();
    try {
      session_->start(bufferSize());
    } catch (AudioEngineError const&) {
      session_ = nullptr;
      throw;
    }
  }

  void stop() override {
    session_ = nullptr;
    error_ = nullptr;
    pending_.clear();
  }

 private:
  AudioFormat inputFormat(AudioNodeBus) override {
    open();
    if (error_) return {AudioCommonFormat::pcmFormatFloat32, 0, 0, true};
    return session_->source().format;
  }
  void removeTap(AudioNodeBus) override {}

  void open() {
    if (session_ || error_) return;
    try {
      PulseAudioSession::Observer& observer = *this;
      session_ = std::make_unique<PulseAudioSession>(server_, observer);
      session_->open();
      auto const& device = session_->source().format;
      captureFormat_ = {AudioCommonFormat::pcmFormatInt16, device.sampleRate(),
                        device.channelCount(), true};
    } catch (AudioEngineError const&) {
      error_ = std::current_exception();
      session_ = nullptr;
    }
  }

  // The server's fragments have any size; buffers have the size that the tap asked for.
  void didCapture(std::byte const* bytes, std::size_t sampleCount) override {
    auto const wanted = bufferSize() * captureFormat_.channelCount();
    while (sampleCount > 0) {
      auto const before = pending_.size();
      auto const taken = std::min(sampleCount, wanted - std::min(before, wanted));
      pending_.resize(before + taken);
      if (bytes) {
        std::memcpy(&pending_[before], bytes, taken * sizeof(std::int16_t));
        bytes += taken * sizeof(std::int16_t);
      }
      sampleCount -= taken;
      if (pending_.size() >= wanted) deliverPending();
    }
  }

  void didLoseSource() override {
    if (!pending_.empty()) deliverPending();
  }

  void didChange() override {
    NotificationCenter::defaultCenter().post(AudioEngineConfigurationChangeNotification);
  }

  void deliverPending() {
    deliver(std::make_shared<AudioPCMBuffer>(captureFormat_, std::exchange(pending_, {})));
  }

  std::string server_;
  std::exception_ptr error_;
  AudioFormat captureFormat_{AudioCommonFormat::pcmFormatInt16, 0, 0, true};
  /// Captured and not yet a buffer's worth. The session's thread has it while there is a session.
  std::vector<std::int16_t> pending_;
  /// Last, to be the first to go: its thread uses all the others.
  std::unique_ptr<PulseAudioSession> session_;
};

}  // namespace

AudioEngineFactory pulseAudioEngineFactory(std::string server) {
  return [server = std::move(server)] { return std::make_shared<PulseAudioEngine>(server); };
}

}  // namespace vek
