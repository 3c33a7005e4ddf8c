// SPDX-License-Identifier: MIT
#include "services/recogniser/ListenSession.hpp"

#include <fmt/format.h>

#include <utility>

#include "platform/Log.hpp"
#include "records/DecodingError.hpp"
#include "records/JSON.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/UUID.hpp"

namespace vek::services {

namespace {

Logger const logger("recogniser");

/// How far, in seconds of audio, the recogniser may be behind before the client has to wait.
constexpr std::uint64_t tolerableDelay = 2;

/// A text message of a client's.
struct Command {
  std::string type;
  static constexpr auto fields() { return std::tuple{Field{"type", &Command::type}}; }
};

std::string commandType(std::string_view text) {
  try {
    return json::decode<Command>(text).type;
  } catch (DecodingError const&) {
    return {};
  }
}

}  // namespace

/// A buffer that tells when the recogniser has let it go.
struct ListenSession::HeldBuffer {
  HeldBuffer(AudioPCMBuffer content, std::shared_ptr<ListenSession> listener)
      : buffer(std::move(content)), session(std::move(listener)) {}
  HeldBuffer(HeldBuffer const&) = delete;
  HeldBuffer& operator=(HeldBuffer const&) = delete;
  ~HeldBuffer() { session->release(buffer.frameLength()); }

  AudioPCMBuffer buffer;
  std::shared_ptr<ListenSession> session;
};

ListenSession::ListenSession(std::shared_ptr<WebSocket> socket,
                             std::shared_ptr<SpeechRecognizer> recognizer, ListenQuery const& query,
                             std::shared_ptr<void> seat)
    : socket_(std::move(socket)),
      recognizer_(std::move(recognizer)),
      query_(query),
      seat_(std::move(seat)),
      format_(AudioCommonFormat::pcmFormatInt16, query.sampleRate, query.channels, true),
      audio_(format_),
      results_(UUID::random().lowerCaseText()) {
  logger.notice(fmt::format("a stream of {} Hz with {} channels has begun", query.sampleRate,
                            query.channels));
}

ListenSession::~ListenSession() {
  logger.notice(fmt::format("a stream of {:.1f} s has ended", audio_.duration()));
}

void ListenSession::receiveWhenCaughtUp() {
  wantsMessage_ = true;
  receiveIfCaughtUp();
}

void ListenSession::receiveIfCaughtUp() {
  if (waitingFrames_ > tolerableDelay * query_.sampleRate || !wantsMessage_.exchange(false)) return;
  socket_->receive([self = shared_from_this()](WebSocket::Message const& message) {
    self->take(message);
    self->receiveWhenCaughtUp();
  });
}

void ListenSession::take(WebSocket::Message const& message) {
  // After the end of its audio a client is only heard to leave.
  if (isClosing_) return;
  if (message.kind == WebSocket::Message::Kind::binary) return hear(message.bytes);
  obey(message.bytes);
}

void ListenSession::hear(std::string_view bytes) {
  if (!part_) beginPart();
  for (auto& buffer : audio_.take(bytes)) {
    waitingFrames_ += buffer.frameLength();
    auto const held = std::make_shared<HeldBuffer>(std::move(buffer), shared_from_this());
    part_->request->appendAudioPCMBuffer({held, &held->buffer});
  }
}

void ListenSession::obey(std::string_view text) {
  auto const type = commandType(text);
  if (type == "Finalize") return finishPart(Ending::finalize);
  if (type == "CloseStream") {
    isClosing_ = true;
    return finishPart(Ending::closeStream);
  }
  if (type == "KeepAlive" || std::exchange(hasLoggedUnknown_, true)) return;
  logger.notice("a text message of a client was not understood and is ignored");
}

void ListenSession::beginPart() {
  auto const request = std::make_shared<SpeechAudioBufferRecognitionRequest>();
  auto task = recognizer_->recognitionTask(
      request,
      [weak = weak_from_this(), start = audio_.duration()](auto const& result, auto const& error) {
        if (auto const self = weak.lock()) self->handle(start, result, error);
      });
  part_ = Part{request, std::move(task)};
}

/// The recogniser answers with a final result, also where there was no audio.
void ListenSession::finishPart(Ending ending) {
  if (!part_) beginPart();
  {
    std::lock_guard const lock(mutex_);
    endings_.push_back(ending);
  }
  std::exchange(part_, std::nullopt)->task->finish();
}

void ListenSession::handle(double partStart, std::optional<SpeechRecognitionResult> const& result,
                           std::exception_ptr const& error) {
  if (error) {
    logger.error(
        fmt::format("the recogniser failed: {}", ErrorObject(error).localizedDescription()));
    return socket_->close(WebSocket::CloseCode::internalError, "The recogniser failed.");
  }
  if (result->speechRecognitionMetadata) return sendSettled(partStart, *result);
  if (!query_.interimResults) return;
  socket_->send(
      json::encode(results_.interim(result->bestTranscription.formattedString, heardTime())));
}

void ListenSession::sendSettled(double partStart, SpeechRecognitionResult const& result) {
  std::optional<Ending> ending;
  if (result.isFinal) {
    std::lock_guard const lock(mutex_);
    ending = endings_.front();
    endings_.pop_front();
  }
  auto const& text = result.bestTranscription.formattedString;
  auto const& metadata = *result.speechRecognitionMetadata;
  std::chrono::duration<double> const start = metadata.speechStart;
  std::chrono::duration<double> const length = metadata.speechDuration;
  ListenResults::Stretch const speech{partStart + start.count(),
                                      partStart + (start + length).count()};

  if (ending != Ending::closeStream || !text.empty()) {
    auto record = results_.settled(text, speech, ending ? heardTime() : speech.end);
    record.speechFinal = metadata.endsAtPause && query_.endpointing;
    record.fromFinalize = ending == Ending::finalize;
    socket_->send(json::encode(record));
  }
  if (ending == Ending::closeStream) sendClosing();
}

void ListenSession::sendClosing() {
  socket_->send(
      json::encode(results_.closing(audio_.sha256(), audio_.duration(), audio_.channels())));
  socket_->close(WebSocket::CloseCode::normalClosure, "");
}

void ListenSession::release(std::uint64_t frames) {
  heardFrames_ += frames;
  waitingFrames_ -= frames;
  receiveIfCaughtUp();
}

}  // namespace vek::services
