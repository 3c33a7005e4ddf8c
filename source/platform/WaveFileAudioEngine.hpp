// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "platform/AudioEngine.hpp"
#include "platform/WaveFilePlayback.hpp"

namespace vek {

/// How fast a file is played.
enum class WaveFilePace : std::uint8_t {
  /// As fast as buffers are let go of.
  asTaken,
  /// That, but no faster than it was spoken.
  realTime,
};

/// Makes engines whose microphone is a WAV file, each playing it from its start. At most about a
/// quarter of a second is in the hands of the consumer, counted by the buffers that are alive.
/// After the file comes silence until the engine is stopped, at no more than 20 times real time.
/// `playback` tells how far the last engine has come.
[[nodiscard]] AudioEngineFactory waveFileAudioEngineFactory(
    std::filesystem::path path, WaveFilePace pace,
    std::shared_ptr<WaveFilePlayback> playback = std::make_shared<WaveFilePlayback>());

}  // namespace vek
