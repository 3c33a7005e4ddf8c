// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

#include "platform/AudioNode.hpp"
#include "platform/AudioPCMBuffer.hpp"

namespace vek {

/// Where a buffer lies in the capture.
struct AudioTime {
  /// Frames since the engine's start.
  std::uint64_t sampleTime = 0;
};

/// Called on the engine's thread. Must only hand the buffer on, and not call the node.
using AudioTapBlock = std::function<void(std::shared_ptr<AudioPCMBuffer const>, AudioTime)>;

/// A stage whose output can be tapped. It has one bus, 0. Engines deliver 16-bit interleaved
/// buffers in the format of the link that leaves it.
class AudioMixerNode final : public AudioNode {
 public:
  /// The format of the link that leaves this node; without channels until there is one.
  [[nodiscard]] AudioFormat outputFormat(AudioNodeBus bus) const;

  /// Asks for buffers of `bufferSize` frames; the last before a stop may be shorter. `format` must
  /// be the output's.
  void installTap(AudioNodeBus bus, std::size_t bufferSize, AudioFormat const& format,
                  AudioTapBlock block);
  /// The block isn't called any more after this has returned.
  void removeTap(AudioNodeBus bus);

  // What engines use.
  void setOutputFormat(AudioFormat const& format);
  /// The frames that the tap asked for; 0 without a tap.
  [[nodiscard]] std::size_t tapBufferSize() const;
  void render(std::shared_ptr<AudioPCMBuffer const> buffer, AudioTime time);

 private:
  mutable std::mutex mutex_;
  AudioFormat outputFormat_{AudioCommonFormat::pcmFormatInt16, 0, 0, true};
  std::size_t tapBufferSize_ = 0;
  AudioTapBlock tap_;
};

}  // namespace vek
