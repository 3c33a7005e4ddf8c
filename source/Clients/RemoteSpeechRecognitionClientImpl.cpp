// SPDX-License-Identifier: MIT
#include "Clients/RemoteSpeechRecognitionClientImpl.hpp"

#include <fmt/format.h>

#include <cstring>
#include <utility>

#include "Clients/ListenRequestImpl.hpp"
#include "Clients/RemoteSpeechRecognitionError.hpp"
#include "records/DecodingError.hpp"
#include "records/DeepgramMetadataDTO.hpp"
#include "records/JSON.hpp"
#include "runtime/CallbackOperation.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {
namespace {

using CloseCode = URLSessionWebSocketTask::CloseCode;

constexpr std::string_view finalize = R"({ "type": "Finalize" })";

std::string description(std::exception_ptr const& error) {
  return ErrorObject(error).localizedDescription();
}

/// Whether an open connection has gone, as opposed to one that never came about.
bool isNotConnected(std::exception_ptr const& error) {
  try {
    std::rethrow_exception(error);
  } catch (WebSocketError const& failure) {
    return failure.code() == WebSocketError::Code::notConnected;
  } catch (...) {
    return false;
  }
}

WebSocketMessage binaryMessage(AudioPCMBuffer const& buffer) {
  auto const bytes = buffer.bytes();
  WebSocketMessage message{.kind = WebSocketMessage::Kind::binary,
                           .bytes = std::string(bytes.size(), '\0')};
  if (!bytes.empty()) std::memcpy(message.bytes.data(), bytes.data(), bytes.size());
  return message;
}

}  // namespace

RemoteSpeechRecognitionClientImpl::~RemoteSpeechRecognitionClientImpl() {
  recordingTask_.cancel();
}

Task<bool> RemoteSpeechRecognitionClientImpl::hasPermission() {
  co_return operations_.captureDevice.authorizationStatusForMediaType(MediaType::audio) ==
      AuthorizationStatus::authorized;
}

Task<bool> RemoteSpeechRecognitionClientImpl::requestPermission() {
  using Error = RemoteSpeechRecognitionError;
  co_return co_await callbackOperation<bool>([this](Completion<bool> completion) {
    operations_.captureDevice.requestAccessForMediaType(
        MediaType::audio, [completion = std::move(completion)](bool isGranted) {
          if (isGranted) {
            completion.resolve(true);
          } else {
            completion.reject(std::make_exception_ptr(Error(Error::authorizationDenied)));
          }
        });
  });
}

Task<Stream<RecordingTranscript>> RemoteSpeechRecognitionClientImpl::startRecording() {
  start();
  std::lock_guard const lock(mutex_);
  if (!transcriptionSubject_) {
    throw RemoteSpeechRecognitionError(RemoteSpeechRecognitionError::programmerError);
  }
  co_return transcriptionSubject_->values();
}

void RemoteSpeechRecognitionClientImpl::start() {
  auto const subject = std::make_shared<Subject<RecordingTranscript>>();
  Socket ofStopped;
  std::unique_lock lock(mutex_);
  // It sends its last message yet; what is recorded from now on is none of its business.
  if (state_ == State::stopped) ofStopped = std::exchange(webSocketTask_, nullptr);
  state_ = State::working;
  transcriptionSubject_ = subject;
  TaskHandle const previous = recordingTask_;
  recordingTask_ = spawn(ThreadPool::shared(), record(weak_from_this(), subject, previous));
  lock.unlock();
  previous.cancel();
}

/// The audio task: from the microphone to the socket. There is one at a time, as there is one
/// microphone.
Task<> RemoteSpeechRecognitionClientImpl::record(Self weak, TranscriptionSubject subject,
                                                 TaskHandle previous) {
  co_await previous.wait();
  std::shared_ptr<RecordingClient const> microphone;
  if (auto const self = weak.lock(); self && self->isWorking(subject)) {
    microphone = self->recordingClient_.value();
  } else {
    co_return;
  }

  auto buffers = microphone->startRecording();
  // A stop that came before the microphone was on must not leave it on.
  if (auto const self = weak.lock(); self && self->isStopped()) microphone->stopRecording();
  auto const ended = co_await attempt(stream(weak, subject, std::move(buffers)));
  if (ended || isCancellation(ended.error())) co_return;
  auto const self = weak.lock();
  if (!self) co_return;
  std::unique_lock lock(self->mutex_);
  // For the user the recording is over, and nobody else would turn the microphone off.
  if (self->transcriptionSubject_ == subject) self->stop(std::move(lock), ended.error());
}

Task<> RemoteSpeechRecognitionClientImpl::stream(Self weak, TranscriptionSubject subject,
                                                 RecordingClient::Buffers buffers) {
  while (auto const buffer = co_await buffers.next()) {
    std::weak_ptr<URLSessionWebSocketTask> opened;
    if (auto const self = weak.lock()) {
      auto const preparation = self->prepare(subject, (*buffer)->format());
      if (preparation.isOver) co_return;
      opened = preparation.opened;
    } else {
      co_return;
    }

    auto const sent = co_await attempt(send(weak, *buffer));
    // The loss of a buffer is logged and borne.
    if (!sent && isCancellation(sent.error())) co_return;
    auto const self = weak.lock();
    if (!self) co_return;
    if (auto const socket = opened.lock(); self->isCurrent(socket)) self->receive(socket);
  }
}

RemoteSpeechRecognitionClientImpl::Preparation RemoteSpeechRecognitionClientImpl::prepare(
    TranscriptionSubject const& subject, AudioFormat const& format) {
  std::unique_lock lock(mutex_);
  if (transcriptionSubject_ != subject) return {.isOver = true};
  bool const didChange = lastFormat_ && lastFormat_->sampleRate() != format.sampleRate();
  Socket const socket = webSocketTask_;
  bool const connects = didChange || !socket;
  if (connects && state_ != State::working) return {.isOver = true};
  lastFormat_ = format;
  lock.unlock();

  if (!connects) return {};
  if (didChange) {
    logger().error("Audio format did change");
  } else {
    logger().debug("New connection");
  }
  return {.opened = connect(subject, socket)};
}

/// Opens a socket in place of `replaced`. Gives none when the recording is over, or when another
/// thread was faster to replace that one.
RemoteSpeechRecognitionClientImpl::Socket RemoteSpeechRecognitionClientImpl::connect(
    TranscriptionSubject const& subject, Socket const& replaced) {
  std::unique_lock lock(mutex_);
  if (!lastFormat_) {
    throw RemoteSpeechRecognitionError(RemoteSpeechRecognitionError::programmerError);
  }
  auto const format = *lastFormat_;
  auto const mayReplace = [&](Socket const& present) {
    return state_ == State::working && transcriptionSubject_ == subject &&
           webSocketTask_ == present;
  };
  if (!mayReplace(replaced)) return nullptr;
  webSocketTask_ = nullptr;
  lock.unlock();
  if (replaced) replaced->cancel(CloseCode::goingAway, std::nullopt);

  auto socket = makeSocket(format);
  lock.lock();
  // A thread that has seen another format by now opens a socket for that.
  if (!mayReplace(nullptr) || lastFormat_->sampleRate() != format.sampleRate()) return nullptr;
  webSocketTask_ = socket;
  lock.unlock();
  socket->resume();
  return socket;
}

RemoteSpeechRecognitionClientImpl::Socket RemoteSpeechRecognitionClientImpl::makeSocket(
    AudioFormat const& format) {
  auto request = listenRequest(format);
  logger().notice("Deepgram URL: " + request.url);
  auto const session = operations_.makeSession(weak_from_this());
  auto socket = session->webSocketTask(std::move(request));
  socket->setDelegate(weak_from_this());
  return socket;
}

void RemoteSpeechRecognitionClientImpl::webSocketTaskDidOpen(URLSessionWebSocketTask&,
                                                             std::optional<std::string> protocol) {
  logger().debug(
      [&] { return "WebSocket connection opened. Protocol: " + protocol.value_or("<none>"); });
}

Task<> RemoteSpeechRecognitionClientImpl::send(Self weak, Buffer buffer) {
  Socket socket;
  if (auto const self = weak.lock()) {
    std::unique_lock lock(self->mutex_);
    socket = self->webSocketTask_;
    lock.unlock();
    if (!socket) {
      self->logger().error("webSocketTask is nil, cannot send audio data");
      co_return;
    }
  }
  if (!socket) co_return;
  try {
    co_await callbackOperation<bool>([&](Completion<bool> sent) {
      socket->send(binaryMessage(*buffer), [sent = std::move(sent)](std::exception_ptr error) {
        error ? sent.reject(std::move(error)) : sent.resolve(true);
      });
    });
  } catch (CancellationError const&) {
    throw;
  } catch (...) {
    if (auto const self = weak.lock()) {
      self->logger().error("Error sending audio data: " + description(std::current_exception()));
    }
    throw;
  }
}

void RemoteSpeechRecognitionClientImpl::receive(Socket const& socket) {
  // The socket is not held either: it must go when its owner lets go of it.
  socket->receive([weak = weak_from_this(),
                   source = std::weak_ptr(socket)](Result<WebSocketMessage> const& message) {
    auto const self = weak.lock();
    if (!self) return;
    if (message) {
      self->didReceive(source.lock(), message.value());
    } else {
      self->didFailToReceive(source.lock(), message.error());
    }
  });
}

void RemoteSpeechRecognitionClientImpl::didReceive(Socket const& socket,
                                                   WebSocketMessage const& message) {
  std::unique_lock lock(mutex_);
  if (!socket || webSocketTask_ != socket) return;
  bool const works = state_ == State::working;
  auto const subject = transcriptionSubject_;
  lock.unlock();

  if (message.kind == WebSocketMessage::Kind::binary) {
    logger().debug("Received data");
  } else if (!works || !handle(message.bytes, subject)) {
    return;
  }
  if (isCurrent(socket)) receive(socket);
}

void RemoteSpeechRecognitionClientImpl::didFailToReceive(Socket const& socket,
                                                         std::exception_ptr const& error) {
  // One that was replaced or closed has nobody left to fail, and its end is nobody's error.
  if (!isCurrent(socket)) {
    return logger().debug([&] { return "Failed to receive message: " + description(error); });
  }
  logger().error("Failed to receive message: " + description(error));
  std::unique_lock lock(mutex_);
  if (webSocketTask_ != socket) return;
  if (state_ != State::working || !isNotConnected(error)) return stop(std::move(lock), error);
  auto const subject = transcriptionSubject_;
  lock.unlock();
  try {
    if (auto const next = connect(subject, socket)) receive(next);
  } catch (...) {
    // The next buffer tries again, and its failure is told.
  }
}

bool RemoteSpeechRecognitionClientImpl::handle(std::string_view text,
                                               TranscriptionSubject const& subject) {
  logger().debug([&] { return fmt::format("Received response: {}", text); });
  std::string reason;
  try {
    handle(json::decode<Deepgram::ResultDTO>(text), subject);
    return true;
  } catch (DecodingError const& error) {
    reason = error.what();
  }
  try {
    std::ignore = json::decode<Deepgram::MetadataDTO>(text);
  } catch (DecodingError const&) {
    logger().error("Couldn't handle deepgram results response: " + reason);
    return true;
  }
  if (subject) subject->sendCompletion();
  return false;
}

void RemoteSpeechRecognitionClientImpl::handle(Deepgram::ResultDTO const& result,
                                               TranscriptionSubject const& subject) {
  auto const& alternatives = result.channel.alternatives;
  if (alternatives.empty() || alternatives.front().transcript.empty()) {
    logger().error("No transcript found in response.");
    return;
  }
  auto const& transcript = alternatives.front().transcript;
  logger().debug([&] { return "Received transcript: " + transcript; });
  if (subject) subject->send({.text = transcript, .isPartial = !result.isFinal});
}

Task<> RemoteSpeechRecognitionClientImpl::stopRecording() {
  stop(std::unique_lock(mutex_));
  co_return;
}

/// The stop steps; `held` is the lock. With a failure the subject ends in it.
void RemoteSpeechRecognitionClientImpl::stop(std::unique_lock<std::mutex> held,
                                             std::exception_ptr const& failure) {
  state_ = State::stopped;
  auto const socket = webSocketTask_;
  auto const subject = transcriptionSubject_;
  auto const recording = recordingTask_;
  held.unlock();

  if (failure) logger().debug("Stopping streaming");
  recordingClient_->stopRecording();
  // Told only now: whoever hears of it may start anew, and keeps the microphone.
  if (failure && subject) subject->sendCompletion(failure);
  if (!socket) return recording.cancel();
  // The send holds the socket, so that it is closed in order when a start has let go of it.
  socket->send({.bytes = std::string(finalize)},
               [weak = weak_from_this(), socket, subject, recording](std::exception_ptr const&) {
                 if (auto const self = weak.lock()) self->close(socket, subject, recording);
               });
}

/// Ends what belongs to one recording, and leaves alone what a later one has put in its place.
void RemoteSpeechRecognitionClientImpl::close(Socket const& socket,
                                              TranscriptionSubject const& subject,
                                              TaskHandle const& recording) {
  {
    std::lock_guard const lock(mutex_);
    if (webSocketTask_ == socket) webSocketTask_ = nullptr;
    if (transcriptionSubject_ == subject) transcriptionSubject_ = nullptr;
  }
  recording.cancel();
  socket->cancel(CloseCode::goingAway, std::nullopt);
  if (subject) subject->sendCompletion();
  logger().debug("🛑 Streaming stopped");
}

bool RemoteSpeechRecognitionClientImpl::isWorking(TranscriptionSubject const& subject) const {
  std::lock_guard const lock(mutex_);
  return state_ == State::working && transcriptionSubject_ == subject;
}

bool RemoteSpeechRecognitionClientImpl::isStopped() const {
  std::lock_guard const lock(mutex_);
  return state_ == State::stopped;
}

bool RemoteSpeechRecognitionClientImpl::isCurrent(Socket const& socket) const {
  std::lock_guard const lock(mutex_);
  return socket && webSocketTask_ == socket;
}

Logger const& RemoteSpeechRecognitionClientImpl::logger() {
  std::call_once(loggerMade_, [this] { logger_.emplace("RemoteSpeechRecognitionClient"); });
  return *logger_;
}

RemoteSpeechRecognitionClient makeRemoteSpeechRecognitionClient(
    RemoteSpeechRecognitionClientImpl::Operations operations) {
  auto const client = std::make_shared<RemoteSpeechRecognitionClientImpl>(std::move(operations));
  // Whether the microphone may be used is looked up in files and of other programs.
  auto& pool = ThreadPool::shared();
  return {.hasPermission = [client, &pool] { return on(pool, client->hasPermission()); },
          .requestPermission = [client, &pool] { return on(pool, client->requestPermission()); },
          .startRecording = [client] { return client->startRecording(); },
          .stopRecording = [client] { return client->stopRecording(); }};
}

RemoteSpeechRecognitionClient RemoteSpeechRecognitionClientKey::liveValue() {
  return makeRemoteSpeechRecognitionClient(
      {.makeSession =
           [](std::weak_ptr<URLSessionWebSocketDelegate> delegate) {
             return URLSession::make(URLSession::Configuration::defaultSessionConfiguration(),
                                     std::move(delegate));
           },
       .captureDevice = captureDevice()});
}

}  // namespace vek
