// SPDX-License-Identifier: MIT
#include "platform/AudioMixerNode.hpp"

#include <stdexcept>
#include <utility>

namespace vek {

namespace {

void requireOnlyBus(AudioNodeBus bus) {
  if (bus != 0) throw std::out_of_range("a mixer node has bus 0 only");
}

}  // namespace

AudioFormat AudioMixerNode::outputFormat(AudioNodeBus bus) const {
  requireOnlyBus(bus);
  std::lock_guard lock(mutex_);
  return outputFormat_;
}

void AudioMixerNode::installTap(AudioNodeBus bus, std::size_t bufferSize, AudioFormat const& format,
                                AudioTapBlock block) {
  requireOnlyBus(bus);
  std::lock_guard lock(mutex_);
  if (format != outputFormat_) throw std::invalid_argument("a tap takes the node's output format");
  tapBufferSize_ = bufferSize;
  tap_ = std::move(block);
}

void AudioMixerNode::removeTap(AudioNodeBus bus) {
  requireOnlyBus(bus);
  std::lock_guard lock(mutex_);
  tapBufferSize_ = 0;
  tap_ = nullptr;
}

void AudioMixerNode::setOutputFormat(AudioFormat const& format) {
  std::lock_guard lock(mutex_);
  outputFormat_ = format;
}

std::size_t AudioMixerNode::tapBufferSize() const {
  std::lock_guard lock(mutex_);
  return tapBufferSize_;
}

void AudioMixerNode::render(std::shared_ptr<AudioPCMBuffer const> buffer, AudioTime time) {
  // Held during the call, so that a removed tap is a silent tap.
  std::lock_guard lock(mutex_);
  if (tap_) tap_(std::move(buffer), time);
}

}  // namespace vek
