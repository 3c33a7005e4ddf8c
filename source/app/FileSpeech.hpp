// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>

#include "Clients/RecognitionProvider.hpp"
#include "platform/WaveFilePlayback.hpp"
#include "runtime/DependencyValues.hpp"

namespace vek {

/// Puts a WAV file in the place of the microphone, for which `recogniser` needs nobody's
/// permission. The one on this machine hears it as fast as it can, a hosted one as it was spoken.
void playFile(std::filesystem::path const& file, RecognitionProvider recogniser,
              std::shared_ptr<WaveFilePlayback> const& playback, DependencyValues& values);

/// What a recogniser has made of a played file so far.
struct FileText {
  RecognitionProvider recogniser;
  bool isPiecePending;
  /// Whether any piece is settled.
  bool hasPieces;
};

/// True when a played file has been said to its end: what follows is silence, long enough for the
/// recogniser to have settled its last words, and no more text is to be expected. A piece that
/// stays pending is not waited for without end.
bool hasBeenSaid(WaveFilePlayback const& playback, FileText const& text);

}  // namespace vek
