// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "platform/AudioMixerNode.hpp"
#include "platform/AudioNode.hpp"
#include "platform/AudioPCMBuffer.hpp"

namespace vek {

/// Posted to the default notification center, on a thread of the engine's, when the device or its
/// format is no longer the one that the graph was built for. The engine has stopped by then.
inline constexpr std::string_view AudioEngineConfigurationChangeNotification =
    "AudioEngineConfigurationChangeNotification";

/// The engine's end towards the microphone.
class AudioInputNode : public AudioNode {
 public:
  /// The device's current format; with no channels where there is no device to ask, and then
  /// `AudioEngine::start` throws the reason. May wait for the device.
  virtual AudioFormat inputFormat(AudioNodeBus bus) = 0;
  virtual void removeTap(AudioNodeBus bus) = 0;
};

/// A graph of nodes that the microphone feeds while it runs. Its owner calls it on one thread at a
/// time; buffers and notifications come on a thread of its own.
class AudioEngine {
 public:
  AudioEngine() = default;
  AudioEngine(AudioEngine const&) = delete;
  AudioEngine& operator=(AudioEngine const&) = delete;
  virtual ~AudioEngine() = default;

  virtual AudioInputNode& inputNode() = 0;
  [[nodiscard]] virtual bool isRunning() const = 0;

  virtual void attachNode(std::shared_ptr<AudioMixerNode> node) = 0;
  /// Undoes the node's links too. A node that isn't attached is ignored.
  virtual void detachNode(AudioMixerNode const& node) = 0;
  /// Links two nodes, of which mixers must be attached; `format` is what flows between them.
  virtual void connect(AudioNode const& from, AudioNode const& to, AudioFormat const& format) = 0;

  virtual void prepare() = 0;
  /// Throws what keeps the engine from running, `AudioEngineError` or `WaveFileError`.
  virtual void start() = 0;
  /// No buffer comes after this has returned.
  virtual void stop() = 0;
};

using AudioEngineFactory = std::function<std::shared_ptr<AudioEngine>()>;

}  // namespace vek
