// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "Clients/RecordingClient.hpp"
#include "Clients/RemoteSpeechRecognitionClient.hpp"
#include "platform/AudioPCMBuffer.hpp"
#include "platform/CaptureDevice.hpp"
#include "platform/Log.hpp"
#include "platform/URLSessionWebSocketTask.hpp"
#include "records/DeepgramResultDTO.hpp"
#include "runtime/Dependency.hpp"
#include "runtime/Subject.hpp"
#include "runtime/TaskHandle.hpp"

namespace vek {

/// Streams the microphone's buffers to the hosted recogniser over one WebSocket at a time and hands
/// on what comes back. The socket opens with the first buffer, whose format its URL names.
class RemoteSpeechRecognitionClientImpl
    : public URLSessionWebSocketDelegate,
      public std::enable_shared_from_this<RemoteSpeechRecognitionClientImpl> {
 public:
  /// What the client asks of the platform.
  struct Operations {
    std::function<std::shared_ptr<URLSession>(std::weak_ptr<URLSessionWebSocketDelegate>)>
        makeSession;
    CaptureDevice captureDevice;
  };

  explicit RemoteSpeechRecognitionClientImpl(Operations operations)
      : operations_(std::move(operations)) {}
  ~RemoteSpeechRecognitionClientImpl() override;

  Task<bool> hasPermission();
  Task<bool> requestPermission();
  Task<Stream<RecordingTranscript>> startRecording();
  Task<> stopRecording();

  void webSocketTaskDidOpen(URLSessionWebSocketTask& task,
                            std::optional<std::string> protocol) override;

 private:
  /// Also what tells one recording from the next.
  using TranscriptionSubject = std::shared_ptr<Subject<RecordingTranscript>>;
  using Socket = std::shared_ptr<URLSessionWebSocketTask>;
  using Buffer = std::shared_ptr<AudioPCMBuffer const>;
  using Self = std::weak_ptr<RemoteSpeechRecognitionClientImpl>;
  enum class State : std::uint8_t { stopped, working };

  void start();
  void stop(std::unique_lock<std::mutex> held, std::exception_ptr const& failure = nullptr);
  void close(Socket const& socket, TranscriptionSubject const& subject,
             TaskHandle const& recording);

  static Task<> record(Self weak, TranscriptionSubject subject, TaskHandle previous);
  static Task<> stream(Self weak, TranscriptionSubject subject, RecordingClient::Buffers buffers);
  static Task<> send(Self weak, Buffer buffer);

  /// What a buffer asks for before it is sent.
  struct Preparation {
    bool isOver = false;
    /// The socket that was opened for this buffer.
    Socket opened = nullptr;
  };
  Preparation prepare(TranscriptionSubject const& subject, AudioFormat const& format);
  Socket connect(TranscriptionSubject const& subject, Socket const& replaced);
  Socket makeSocket(AudioFormat const& format);

  void receive(Socket const& socket);
  void didReceive(Socket const& socket, WebSocketMessage const& message);
  void didFailToReceive(Socket const& socket, std::exception_ptr const& error);
  /// Whether there is more to read.
  bool handle(std::string_view text, TranscriptionSubject const& subject);
  void handle(Deepgram::ResultDTO const& result, TranscriptionSubject const& subject);

  [[nodiscard]] bool isWorking(TranscriptionSubject const& subject) const;
  [[nodiscard]] bool isStopped() const;
  [[nodiscard]] bool isCurrent(Socket const& socket) const;
  Logger const& logger();

  Operations operations_;
  /// Guards the fields of a recording, which the caller, the audio task and the sockets share. No
  /// call leaves this object while it is held.
  mutable std::mutex mutex_;

  TranscriptionSubject transcriptionSubject_;
  Socket webSocketTask_;
  std::once_flag loggerMade_;
  std::optional<Logger> logger_;
  TaskHandle recordingTask_;
  std::optional<AudioFormat> lastFormat_;
  State state_ = State::stopped;
  Dependency<RecordingClientKey> recordingClient_;
};

/// The operations of a client of its own over these parts of the platform.
[[nodiscard]] RemoteSpeechRecognitionClient makeRemoteSpeechRecognitionClient(
    RemoteSpeechRecognitionClientImpl::Operations operations);

}  // namespace vek
