// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Clients/LocalSpeechRecognitionClient.hpp"
#include "Clients/LocaleKey.hpp"
#include "Clients/RecordingClient.hpp"
#include "platform/Log.hpp"
#include "platform/SpeechRecognizer.hpp"
#include "runtime/Dependency.hpp"
#include "runtime/Subject.hpp"
#include "runtime/TaskHandle.hpp"

namespace vek {

/// Feeds the microphone's buffers to a speech recogniser and hands on what it makes of them.
class LocalSpeechRecognitionClientImpl
    : public std::enable_shared_from_this<LocalSpeechRecognitionClientImpl> {
 public:
  explicit LocalSpeechRecognitionClientImpl(SpeechRecognizerOperations operations)
      : operations_(std::move(operations)) {}

  Task<bool> hasPermission();
  Task<bool> requestPermission();
  Task<Stream<RecordingTranscript>> startRecording();
  Task<> stopRecording();
  Task<std::vector<std::string>> availableLanguages();

 private:
  using TranscriptionSubject = std::shared_ptr<Subject<RecordingTranscript>>;

  static Task<> record(std::weak_ptr<LocalSpeechRecognitionClientImpl> weak,
                       std::shared_ptr<SpeechRecognizer> recognizer, TranscriptionSubject subject);
  std::shared_ptr<SpeechAudioBufferRecognitionRequest> startRecognition(
      std::shared_ptr<SpeechRecognizer> const& recognizer, TranscriptionSubject const& subject);
  void handle(TranscriptionSubject const& subject,
              std::optional<SpeechRecognitionResult> const& result,
              std::exception_ptr const& error);

  [[nodiscard]] bool isCurrent(TranscriptionSubject const& subject) const;
  [[nodiscard]] bool isRecording() const;
  Logger const& logger();

  SpeechRecognizerOperations operations_;
  /// Guards the fields of a recording: start and stop come from the caller, the audio from the
  /// pool and the results from the recogniser.
  mutable std::mutex mutex_;

  std::shared_ptr<SpeechRecognizer> speechRecognizer_;
  std::shared_ptr<SpeechRecognitionTask> recognitionTask_;
  std::shared_ptr<SpeechAudioBufferRecognitionRequest> recognitionRequest_;
  TranscriptionSubject transcriptionSubject_;
  TaskHandle recordingTask_;
  std::once_flag loggerMade_;
  std::optional<Logger> logger_;
  Dependency<RecordingClientKey> recordingClient_;
  Dependency<LocaleKey> locale_;
};

/// The operations of a client of its own over a recogniser.
[[nodiscard]] LocalSpeechRecognitionClient makeLocalSpeechRecognitionClient(
    SpeechRecognizerOperations operations);

}  // namespace vek
