// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <mutex>

#include "Clients/RecordingClient.hpp"
#include "platform/AudioEngine.hpp"
#include "platform/Log.hpp"
#include "runtime/Result.hpp"
#include "runtime/SerialQueue.hpp"

namespace vek {

/// Owns the audio graph: the microphone, a mixer that gives 16-bit interleaved samples and carries
/// the tap, and a mixer behind it that nothing listens to. Graph work and delivery run on `queue`.
class RecordingClientImpl : public std::enable_shared_from_this<RecordingClientImpl> {
 public:
  explicit RecordingClientImpl(AudioEngineFactory makeEngine);
  RecordingClientImpl(RecordingClientImpl const&) = delete;
  RecordingClientImpl& operator=(RecordingClientImpl const&) = delete;
  ~RecordingClientImpl();

  /// Must not be called on `queue`.
  RecordingClient::Buffers startRecording();
  void stopRecording();
  /// Stops and waits until all queued work has run.
  void shutDown();

 private:
  using Buffer = std::shared_ptr<AudioPCMBuffer const>;
  using Handler = std::function<void(Result<Buffer>)>;

  std::shared_ptr<SerialQueue> const& queue();
  Logger const& logger();
  AudioEngine& audioEngine();

  void observeDeviceChanges();
  void stopObserving();
  void startEngine();
  void restartAfterDeviceChange();
  void buildGraph();
  void tearDownGraph();
  void setHandler(Handler handler);
  void handle(Result<Buffer> result);

  AudioEngineFactory makeEngine_;
  std::once_flag queueMade_;
  std::once_flag loggerMade_;
  std::mutex handlerMutex_;

  // Both shared with work that may outlive this object.
  std::shared_ptr<SerialQueue> queue_;
  std::shared_ptr<Logger const> logger_;
  std::shared_ptr<AudioEngine> audioEngine_;
  std::shared_ptr<AudioMixerNode> converterNode_;
  std::shared_ptr<AudioMixerNode> sinkNode_;
  std::shared_ptr<Handler const> handler_;
};

/// The operations of a client of its own over the engines that `makeEngine` makes.
[[nodiscard]] RecordingClient makeRecordingClient(AudioEngineFactory makeEngine);

}  // namespace vek
