// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>

#include "records/RecordingTranscript.hpp"
#include "runtime/Stream.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// What every recogniser's client can do, on the device or hosted.
template <class Client>
concept SpeechRecognitionProviderProtocol = requires(Client const& client) {
  { client.hasPermission() } -> std::same_as<Task<bool>>;
  { client.requestPermission() } -> std::same_as<Task<bool>>;
  { client.startRecording() } -> std::same_as<Task<Stream<RecordingTranscript>>>;
  { client.stopRecording() } -> std::same_as<Task<>>;
};

}  // namespace vek
