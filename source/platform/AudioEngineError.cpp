// SPDX-License-Identifier: MIT
#include "platform/AudioEngineError.hpp"

namespace vek {

namespace {

std::string_view text(AudioEngineError::Reason reason) {
  using enum AudioEngineError::Reason;
  switch (reason) {
    case noSoundServer:
      return "No sound server could be reached.";
    case noMicrophone:
      return "No microphone was found.";
    case accessDenied:
      return "The sound server denies access to the microphone.";
    case timedOut:
      return "The sound server did not answer in time.";
    case captureFailed:
      break;
  }
  return "The microphone could not be opened.";
}

}  // namespace

AudioEngineError::AudioEngineError(Reason reason, std::string_view detail)
    : reason_(reason), text_(text(reason)) {
  if (!detail.empty()) text_.append(" (").append(detail).append(")");
}

}  // namespace vek
