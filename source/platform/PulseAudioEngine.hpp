// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/AudioEngine.hpp"

namespace vek {

/// Makes engines whose microphone is the default source of a sound server that speaks PulseAudio's
/// protocol. `server` is its address; empty for the user's own.
[[nodiscard]] AudioEngineFactory pulseAudioEngineFactory(std::string server = {});

}  // namespace vek
