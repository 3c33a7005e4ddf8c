// SPDX-License-Identifier: MIT
#include "app/FileSpeech.hpp"

#include <chrono>

namespace vek {

bool hasBeenSaid(WaveFilePlayback const& playback, bool isPiecePending) {
  using std::chrono_literals::operator""s;
  // Twice the pause that settles a piece, and more than any recogniser takes to give one up.
  constexpr auto settles = 2s;
  constexpr auto givesUp = 15s;
  return playback.hasPlayedFile() &&
         playback.silencePlayed() >= (isPiecePending ? givesUp : settles);
}

}  // namespace vek
