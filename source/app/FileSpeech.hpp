// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>

#include "platform/WaveFilePlayback.hpp"
#include "runtime/DependencyValues.hpp"

namespace vek {

/// Puts a WAV file in the place of the microphone. The recogniser on this machine then needs
/// nobody's permission.
void playFile(std::filesystem::path const& file, std::shared_ptr<WaveFilePlayback> const& playback,
              DependencyValues& values);

/// True when a played file has been said to its end: what follows is silence, long enough for the
/// recogniser to have settled its last words, and no piece is pending. A piece that stays pending
/// is not waited for without end.
bool hasBeenSaid(WaveFilePlayback const& playback, bool isPiecePending);

}  // namespace vek
