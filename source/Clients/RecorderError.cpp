// SPDX-License-Identifier: MIT
#include "Clients/RecorderError.hpp"

namespace vek {

std::string_view RecorderError::rawValue() const {
  switch (case_) {
    case noAuthorization:
      return "noAuthorization";
    case recognizerFailure:
      return "recognizerFailure";
    case notAvailable:
      return "notAvailable";
    case audioEngineFailure:
      break;
  }
  return "audioEngineFailure";
}

char const* RecorderError::what() const noexcept {
  switch (case_) {
    case noAuthorization:
      return "Speech recognition isn't authorized.";
    case recognizerFailure:
      return "There is no speech recognizer for US English.";
    case notAvailable:
      return "The speech recognizer isn't available. The log says what it needs.";
    case audioEngineFailure:
      break;
  }
  return "The audio engine failed.";
}

}  // namespace vek
