// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/AudioEngine.hpp"

namespace vek {

/// What engines have in common: the nodes, their links and the way of a buffer to the tap.
class AudioGraphEngine : public AudioEngine {
 public:
  void attachNode(std::shared_ptr<AudioMixerNode> node) override;
  void detachNode(AudioMixerNode const& node) override;
  void connect(AudioNode const& from, AudioNode const& to, AudioFormat const& format) override;
  void prepare() override {}

 protected:
  static constexpr std::size_t defaultBufferSize = 1024;

  /// The node that the input feeds; null before there is a link.
  [[nodiscard]] std::shared_ptr<AudioMixerNode> fedNode() const;
  /// How many frames a buffer should have.
  [[nodiscard]] std::size_t bufferSize() const;
  /// Hands a buffer to the node that the input feeds. Any one thread at a time.
  void deliver(std::shared_ptr<AudioPCMBuffer const> buffer);
  /// The next buffer is the first of a new start.
  void restartTime() { sampleTime_ = 0; }

 private:
  [[nodiscard]] std::shared_ptr<AudioMixerNode> attached(AudioNode const& node) const;

  mutable std::mutex mutex_;
  std::vector<std::shared_ptr<AudioMixerNode>> nodes_;
  std::shared_ptr<AudioMixerNode> fedNode_;
  std::uint64_t sampleTime_ = 0;
};

}  // namespace vek
