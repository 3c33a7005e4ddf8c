// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "records/RecordingTranscript.hpp"
#include "runtime/DependencyValues.hpp"
#include "runtime/Stream.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// The recogniser of US English that runs on this machine. One recording at a time.
struct LocalSpeechRecognitionClient {
  /// Whether the user lets speech be recognised; says nothing about the microphone.
  std::function<Task<bool>()> hasPermission;
  /// Asks the user. Throws LocalSpeechRecognitionError if the answer is no.
  std::function<Task<bool>()> requestPermission;
  /// Starts the recording and gives its pieces. Throws RecorderError.
  std::function<Task<Stream<RecordingTranscript>>()> startRecording;
  /// Ends the recording and its stream. What has not been given by then is never given.
  std::function<Task<>()> stopRecording;
  /// The names, in the user's language, of the languages that can be recognised.
  std::function<Task<std::vector<std::string>>()> availableLanguages;
};

struct LocalSpeechRecognitionClientKey {
  using Value = LocalSpeechRecognitionClient;
  static LocalSpeechRecognitionClient liveValue();
};
inline constexpr DependencyKeyPath<LocalSpeechRecognitionClientKey> localSpeechRecognitionClient;

}  // namespace vek
