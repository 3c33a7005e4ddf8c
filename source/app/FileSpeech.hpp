// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WaveFilePlayback.hpp"

namespace vek {

/// True when a played file has been said to its end: what follows is silence, long enough for the
/// recogniser to have settled its last words, and no piece is pending. A piece that stays pending
/// is not waited for without end.
bool hasBeenSaid(WaveFilePlayback const& playback, bool isPiecePending);

}  // namespace vek
