// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace vek {

using AudioNodeBus = std::uint32_t;

/// One stage of an audio graph.
class AudioNode {
 public:
  AudioNode() = default;
  AudioNode(AudioNode const&) = delete;
  AudioNode& operator=(AudioNode const&) = delete;
  virtual ~AudioNode() = default;
};

}  // namespace vek
