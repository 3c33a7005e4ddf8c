// SPDX-License-Identifier: MIT
#include "Clients/LocalSpeechRecognitionClientImpl.hpp"

#include <fmt/format.h>

#include <utility>

#include "Clients/LocalSpeechRecognitionError.hpp"
#include "Clients/RecorderError.hpp"
#include "platform/OnDeviceSpeechRecognizer.hpp"
#include "runtime/CallbackOperation.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {

using Status = SpeechRecognizerAuthorizationStatus;

Task<bool> LocalSpeechRecognitionClientImpl::hasPermission() {
  co_return operations_.authorizationStatus() == Status::authorized;
}

Task<bool> LocalSpeechRecognitionClientImpl::requestPermission() {
  auto const status = co_await callbackOperation<Status>([this](Completion<Status> completion) {
    operations_.requestAuthorization([completion = std::move(completion)](Status answer) {
      completion.resolve(Status(answer));
    });
  });
  if (status == Status::denied) {
    throw LocalSpeechRecognitionError(LocalSpeechRecognitionError::authorizationDenied);
  }
  co_return status == Status::authorized;
}

Task<std::vector<std::string>> LocalSpeechRecognitionClientImpl::availableLanguages() {
  auto const current = *locale_.value();
  std::vector<std::string> names;
  for (Locale const& supported : operations_.supportedLocales()) {
    auto const code = supported.languageCode();
    if (!code) continue;
    if (auto name = current->localizedLanguageName(*code)) names.push_back(std::move(*name));
  }
  co_return names;
}

Task<Stream<RecordingTranscript>> LocalSpeechRecognitionClientImpl::startRecording() {
  if (operations_.authorizationStatus() != Status::authorized) {
    logger().error("Speech recognizer not available.");
    throw RecorderError(RecorderError::noAuthorization);
  }
  auto const recognizer = operations_.make(Locale("en-US"));
  if (!recognizer) {
    logger().error("Can not initialize speech recognizer.");
    throw RecorderError(RecorderError::recognizerFailure);
  }
  if (!recognizer->isAvailable()) {
    logger().error("Speech recognizer not available.");
    throw RecorderError(RecorderError::notAvailable);
  }
  auto const subject = std::make_shared<Subject<RecordingTranscript>>();
  std::lock_guard const lock(mutex_);
  transcriptionSubject_ = subject;
  recordingTask_ = spawn(ThreadPool::shared(), record(weak_from_this(), recognizer, subject));
  co_return subject->values();
}

/// The audio task: from the microphone to the recogniser.
Task<> LocalSpeechRecognitionClientImpl::record(
    std::weak_ptr<LocalSpeechRecognitionClientImpl> weak,
    std::shared_ptr<SpeechRecognizer> recognizer, TranscriptionSubject subject) {
  std::shared_ptr<RecordingClient const> microphone;
  std::shared_ptr<SpeechAudioBufferRecognitionRequest> request;
  if (auto const self = weak.lock(); self && self->isCurrent(subject)) {
    request = self->startRecognition(recognizer, subject);
    microphone = self->recordingClient_.value();
  } else {
    co_return;
  }

  auto const buffers = microphone->startRecording();
  // A stop that came before the microphone was on must not leave it on.
  if (auto const self = weak.lock(); self && !self->isRecording()) microphone->stopRecording();
  try {
    while (auto buffer = co_await buffers.next()) request->appendAudioPCMBuffer(std::move(*buffer));
  } catch (CancellationError const&) {
  } catch (...) {
    if (auto const self = weak.lock(); self && self->isCurrent(subject)) {
      subject->sendCompletion(std::current_exception());
    }
  }
}

std::shared_ptr<SpeechAudioBufferRecognitionRequest>
LocalSpeechRecognitionClientImpl::startRecognition(
    std::shared_ptr<SpeechRecognizer> const& recognizer, TranscriptionSubject const& subject) {
  auto const request = std::make_shared<SpeechAudioBufferRecognitionRequest>();
  request->setRequiresOnDeviceRecognition(true);
  auto task = recognizer->recognitionTask(
      request, [weak = weak_from_this(), subject](auto const& result, auto const& error) {
        if (auto const self = weak.lock()) self->handle(subject, result, error);
      });
  std::lock_guard const lock(mutex_);
  // A stop may have come in the meantime; what it has cleared stays so.
  if (transcriptionSubject_ != subject) return request;
  speechRecognizer_ = recognizer;
  recognitionTask_ = std::move(task);
  recognitionRequest_ = request;
  return request;
}

void LocalSpeechRecognitionClientImpl::handle(TranscriptionSubject const& subject,
                                              std::optional<SpeechRecognitionResult> const& result,
                                              std::exception_ptr const& error) {
  if (result) {
    if (isCurrent(subject)) {
      subject->send({.text = result->bestTranscription.formattedString,
                     .isPartial = !result->speechRecognitionMetadata});
    }
    if (!result->isFinal) return;
  }
  if (!result && !error) return;
  logger().notice("Final recognition result");
  if (error) {
    logger().error(fmt::format("Recognition error: {}", ErrorObject(error).localizedDescription()));
  }
  if (isCurrent(subject)) subject->sendCompletion(error);
}

Task<> LocalSpeechRecognitionClientImpl::stopRecording() {
  std::unique_lock lock(mutex_);
  // Taken out before the task is told, so that its last result finds no subject.
  auto const task = std::exchange(recognitionTask_, nullptr);
  auto const subject = std::exchange(transcriptionSubject_, nullptr);
  recognitionRequest_ = nullptr;
  TaskHandle const recording = recordingTask_;
  lock.unlock();

  if (task) task->finish();
  if (subject) subject->sendCompletion();
  recording.cancel();
  recordingClient_->stopRecording();
  co_return;
}

bool LocalSpeechRecognitionClientImpl::isCurrent(TranscriptionSubject const& subject) const {
  std::lock_guard const lock(mutex_);
  return transcriptionSubject_ == subject;
}

bool LocalSpeechRecognitionClientImpl::isRecording() const {
  std::lock_guard const lock(mutex_);
  return transcriptionSubject_ != nullptr;
}

Logger const& LocalSpeechRecognitionClientImpl::logger() {
  std::call_once(loggerMade_, [this] { logger_.emplace("local recorder"); });
  return *logger_;
}

LocalSpeechRecognitionClient makeLocalSpeechRecognitionClient(
    SpeechRecognizerOperations operations) {
  auto const client = std::make_shared<LocalSpeechRecognitionClientImpl>(std::move(operations));
  return {.hasPermission = [client] { return client->hasPermission(); },
          .requestPermission = [client] { return client->requestPermission(); },
          .startRecording = [client] { return client->startRecording(); },
          .stopRecording = [client] { return client->stopRecording(); },
          .availableLanguages = [client] { return client->availableLanguages(); }};
}

LocalSpeechRecognitionClient LocalSpeechRecognitionClientKey::liveValue() {
  return makeLocalSpeechRecognitionClient(sharedSpeechRecognizer());
}

}  // namespace vek
