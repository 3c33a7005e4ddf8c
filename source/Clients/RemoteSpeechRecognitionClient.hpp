// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "records/RecordingTranscript.hpp"
#include "runtime/DependencyValues.hpp"
#include "runtime/Stream.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// The hosted recogniser. One recording at a time.
struct RemoteSpeechRecognitionClient {
  /// Whether the microphone may be used.
  std::function<Task<bool>()> hasPermission;
  /// Asks the user. Throws RemoteSpeechRecognitionError if the answer is no.
  std::function<Task<bool>()> requestPermission;
  /// Starts the recording and gives its pieces, until it stops or fails. The stream ends in a
  /// RemoteSpeechRecognitionError for the microphone and in a WebSocketError for the connection;
  /// one that is only lost on the way is made again.
  std::function<Task<Stream<RecordingTranscript>>()> startRecording;
  /// Ends the recording: what has been said is finalized, and the stream ends when that is sent.
  std::function<Task<>()> stopRecording;
};

struct RemoteSpeechRecognitionClientKey {
  using Value = RemoteSpeechRecognitionClient;
  static RemoteSpeechRecognitionClient liveValue();
};
inline constexpr DependencyKeyPath<RemoteSpeechRecognitionClientKey> remoteSpeechRecognitionClient;

}  // namespace vek
