// SPDX-License-Identifier: MIT
#include "platform/AudioGraphEngine.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vek {

void AudioGraphEngine::attachNode(std::shared_ptr<AudioMixerNode> node) {
  std::lock_guard lock(mutex_);
  nodes_.push_back(std::move(node));
}

void AudioGraphEngine::detachNode(AudioMixerNode const& node) {
  std::lock_guard lock(mutex_);
  std::erase_if(nodes_, [&](auto const& attached) { return attached.get() == &node; });
  if (fedNode_.get() == &node) fedNode_ = nullptr;
}

void AudioGraphEngine::connect(AudioNode const& from, AudioNode const& to,
                               AudioFormat const& format) {
  std::lock_guard lock(mutex_);
  auto destination = attached(to);
  if (!destination) throw std::invalid_argument("a node must be attached before it is connected");
  if (&from == &inputNode()) {
    fedNode_ = std::move(destination);
  } else if (auto const source = attached(from)) {
    source->setOutputFormat(format);
  } else {
    throw std::invalid_argument("a node must be attached before it is connected");
  }
}

std::shared_ptr<AudioMixerNode> AudioGraphEngine::attached(AudioNode const& node) const {
  auto const found =
      std::ranges::find_if(nodes_, [&](auto const& candidate) { return candidate.get() == &node; });
  return found == nodes_.end() ? nullptr : *found;
}

std::shared_ptr<AudioMixerNode> AudioGraphEngine::fedNode() const {
  std::lock_guard lock(mutex_);
  return fedNode_;
}

std::size_t AudioGraphEngine::bufferSize() const {
  auto const node = fedNode();
  auto const wanted = node ? node->tapBufferSize() : 0;
  return wanted > 0 ? wanted : defaultBufferSize;
}

void AudioGraphEngine::deliver(std::shared_ptr<AudioPCMBuffer const> buffer) {
  AudioTime const time{sampleTime_};
  sampleTime_ += buffer->frameLength();
  if (auto const node = fedNode()) node->render(std::move(buffer), time);
}

}  // namespace vek
