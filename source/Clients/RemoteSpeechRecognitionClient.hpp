// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "records/RecordingTranscript.hpp"
#include "runtime/DependencyValues.hpp"
#include "runtime/Stream.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// The hosted recogniser.
struct RemoteSpeechRecognitionClient {
  std::function<Task<bool>()> hasPermission;
  std::function<Task<bool>()> requestPermission;
  /// The pieces of the recording that begins, until it stops or fails.
  std::function<Task<Stream<RecordingTranscript>>()> startRecording;
  std::function<Task<>()> stopRecording;
};

struct RemoteSpeechRecognitionClientKey {
  using Value = RemoteSpeechRecognitionClient;
  static RemoteSpeechRecognitionClient liveValue();
};
inline constexpr DependencyKeyPath<RemoteSpeechRecognitionClientKey> remoteSpeechRecognitionClient;

}  // namespace vek
