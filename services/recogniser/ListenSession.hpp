// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include "platform/SpeechRecognizer.hpp"
#include "services/recogniser/ListenAudio.hpp"
#include "services/recogniser/ListenQuery.hpp"
#include "services/recogniser/ListenResults.hpp"
#include "services/support/WebSocket.hpp"

namespace vek::services {

/// One stream: takes audio and commands from a client and sends what the recogniser makes of it.
/// While the recogniser is too far behind, nothing is read. It lives as long as its connection, and
/// until the recogniser has let go of its audio.
class ListenSession : public std::enable_shared_from_this<ListenSession> {
 public:
  /// All tasks of `recognizer` give their results one after the other. `seat` is held for as long
  /// as the session lives.
  ListenSession(std::shared_ptr<WebSocket> socket, std::shared_ptr<SpeechRecognizer> recognizer,
                ListenQuery const& query, std::shared_ptr<void> seat);
  ListenSession(ListenSession const&) = delete;
  ListenSession& operator=(ListenSession const&) = delete;
  ~ListenSession();

  void start() { receiveWhenCaughtUp(); }

 private:
  /// What a task of the recogniser was told to finish for.
  enum class Ending : std::uint8_t { finalize, closeStream };
  /// The audio up to the next of those, which is one task.
  struct Part {
    std::shared_ptr<SpeechAudioBufferRecognitionRequest> request;
    std::shared_ptr<SpeechRecognitionTask> task;
  };
  struct HeldBuffer;

  // The client's side, one message at a time.
  void receiveWhenCaughtUp();
  void receiveIfCaughtUp();
  void take(WebSocket::Message const& message);
  void hear(std::string_view bytes);
  void obey(std::string_view text);
  void beginPart();
  void finishPart(Ending ending);

  // The recogniser's side, on its thread.
  void handle(double partStart, std::optional<SpeechRecognitionResult> const& result,
              std::exception_ptr const& error);
  void sendSettled(double partStart, SpeechRecognitionResult const& result);
  void sendClosing();
  void release(std::uint64_t frames);

  [[nodiscard]] double heardTime() const { return audio_.seconds(heardFrames_); }

  std::shared_ptr<WebSocket> socket_;
  std::shared_ptr<SpeechRecognizer> recognizer_;
  ListenQuery query_;
  std::shared_ptr<void> seat_;

  AudioFormat format_;
  ListenAudio audio_;
  std::optional<Part> part_;
  bool isClosing_ = false;
  bool hasLoggedUnknown_ = false;

  ListenResults results_;
  std::atomic<std::uint64_t> heardFrames_ = 0;

  std::atomic<std::uint64_t> waitingFrames_ = 0;
  std::atomic<bool> wantsMessage_ = false;
  std::mutex mutex_;
  std::deque<Ending> endings_;
};

}  // namespace vek::services
