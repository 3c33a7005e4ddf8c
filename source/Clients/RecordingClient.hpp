// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "runtime/DependencyValues.hpp"
#include "runtime/Stream.hpp"

namespace vek {

class AudioPCMBuffer;

/// The microphone. One recording at a time.
struct RecordingClient {
  using Buffers = Stream<std::shared_ptr<AudioPCMBuffer const>>;

  /// Starts capture and waits until it runs or has failed. The stream drops nothing, ends with the
  /// error where the start failed, and carries on with another format when the device changes.
  std::function<Buffers()> startRecording;
  /// Ends capture, later. The stream stays open.
  std::function<void()> stopRecording;
};

struct RecordingClientKey {
  using Value = RecordingClient;
  static RecordingClient liveValue();
};
inline constexpr DependencyKeyPath<RecordingClientKey> recordingClient;

}  // namespace vek
