// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "Clients/SpeechRecognitionProviderProtocol.hpp"
#include "runtime/DependencyValues.hpp"

namespace vek {

/// The one recogniser that features use: the one that the user chose, at each start anew.
struct SpeechRecognitionProvider {
  std::function<Task<bool>()> hasPermission;
  std::function<Task<bool>()> requestPermission;
  std::function<Task<Stream<RecordingTranscript>>()> startRecording;
  /// Stops what was started, whatever is chosen by then. Does nothing when nothing records.
  std::function<Task<>()> stopRecording;
};

struct SpeechRecognitionProviderKey {
  using Value = SpeechRecognitionProvider;
  static SpeechRecognitionProvider liveValue();
};
inline constexpr DependencyKeyPath<SpeechRecognitionProviderKey> speechRcognitionProvider;

}  // namespace vek
