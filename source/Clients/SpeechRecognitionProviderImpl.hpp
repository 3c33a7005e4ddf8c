// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "Clients/LocalSpeechRecognitionClient.hpp"
#include "Clients/RecognitionProvider.hpp"
#include "Clients/RemoteSpeechRecognitionClient.hpp"
#include "Clients/SpeechRecognitionProvider.hpp"
#include "runtime/Dependency.hpp"

namespace vek {

/// Reads the user's choice and forwards to the client of that recogniser.
class SpeechRecognitionProviderImpl {
 public:
  using ReadSetting = std::function<RecognitionProvider()>;

  /// `readSetting` says which recogniser to take; a run of a program may hand in its own.
  explicit SpeechRecognitionProviderImpl(ReadSetting readSetting = recognitionProviderSetting)
      : readSetting_(std::move(readSetting)) {}

  Task<bool> hasPermission();
  Task<bool> requestPermission();
  Task<Stream<RecordingTranscript>> startRecording();
  Task<> stopRecording();

  /// The record of the four operations around `impl`.
  static SpeechRecognitionProvider client(std::shared_ptr<SpeechRecognitionProviderImpl> impl);

 private:
  /// The client of the recogniser that is chosen now, as one type.
  [[nodiscard]] SpeechRecognitionProvider chosenClient() const;

  ReadSetting readSetting_;
  std::mutex mutex_;
  /// The client of the recording under way.
  std::optional<SpeechRecognitionProvider> currentProvider_;
  Dependency<LocalSpeechRecognitionClientKey> localRecognizer_;
  Dependency<RemoteSpeechRecognitionClientKey> remoteRecognizer_;
};

}  // namespace vek
