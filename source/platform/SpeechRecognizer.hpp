// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Locale.hpp"
#include "platform/SpeechAudioBufferRecognitionRequest.hpp"

namespace vek {

/// Whether the user lets the program turn speech into text. The numbers are the platform's.
enum class SpeechRecognizerAuthorizationStatus : std::uint8_t {
  notDetermined = 0,
  denied = 1,
  restricted = 2,
  authorized = 3,
};

/// What the recogniser took the audio for.
struct SpeechTranscription {
  std::string formattedString;
};

/// What is known of speech whose text will not change any more.
struct SpeechRecognitionMetadata {
  /// From the first audio of the task.
  std::chrono::milliseconds speechStart{};
  std::chrono::milliseconds speechDuration{};
  /// Whether the speaker paused there. If not, the text was cut off because it had grown long, or
  /// because the task was to finish.
  bool endsAtPause = false;
};

/// What was said since the last settled result of the task, or since its start.
struct SpeechRecognitionResult {
  SpeechTranscription bestTranscription;
  /// No result of the task comes after this one.
  bool isFinal = false;
  /// Present once the text is settled; the next result then starts a text of its own.
  std::optional<SpeechRecognitionMetadata> speechRecognitionMetadata;
};

/// A recognition under way.
class SpeechRecognitionTask {
 public:
  virtual ~SpeechRecognitionTask() = default;

  /// Has the audio appended so far recognised and ends with a final result. Returns at once.
  virtual void finish() = 0;
};

/// Called with a result, an error or both, one call at a time, on a thread of the recogniser.
using SpeechRecognitionResultHandler =
    std::function<void(std::optional<SpeechRecognitionResult> const&, std::exception_ptr const&)>;

/// Turns speech of one language into text.
class SpeechRecognizer {
 public:
  virtual ~SpeechRecognizer() = default;

  /// Whether a task can be started now. If not, the log says what to do about it.
  [[nodiscard]] virtual bool isAvailable() const = 0;

  /// Starts to recognise what is appended to `request`, also before this call. The task goes on
  /// while it or its request is held, and until the audio appended by then is recognised.
  [[nodiscard]] virtual std::shared_ptr<SpeechRecognitionTask> recognitionTask(
      std::shared_ptr<SpeechAudioBufferRecognitionRequest> const& request,
      SpeechRecognitionResultHandler resultHandler) = 0;
};

/// The operations that belong to no recogniser, as a record so that others can stand in.
struct SpeechRecognizerOperations {
  std::function<SpeechRecognizerAuthorizationStatus()> authorizationStatus;
  /// Asks the user if need be, and hands the status to the callback, on any thread.
  std::function<void(std::function<void(SpeechRecognizerAuthorizationStatus)>)>
      requestAuthorization;
  std::function<std::vector<Locale>()> supportedLocales;
  /// Null if there is none for the locale.
  std::function<std::shared_ptr<SpeechRecognizer>(Locale const&)> make;
};

}  // namespace vek
