// SPDX-License-Identifier: MIT
#pragma once

namespace vek {

/// From now on this process leaves no image of its memory behind when it crashes. For programs
/// whose memory holds tokens, first thing.
void disableCoreDumps();

}  // namespace vek
