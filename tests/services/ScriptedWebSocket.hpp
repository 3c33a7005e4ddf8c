// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "records/DeepgramMetadataDTO.hpp"
#include "records/DeepgramResultDTO.hpp"
#include "records/JSON.hpp"
#include "services/support/WebSocket.hpp"

namespace vek::test {

/// A connection without a network, whose client is the test.
class ScriptedWebSocket : public services::WebSocket {
 public:
  void receive(Receiver receiver) override {
    std::lock_guard const lock(mutex_);
    if (closeCode_) return;
    receiver_ = std::move(receiver);
    changed_.notify_all();
  }

  void send(std::string text) override {
    std::lock_guard const lock(mutex_);
    sent_.push_back(std::move(text));
    changed_.notify_all();
  }

  void close(CloseCode code, std::string) override {
    std::lock_guard const lock(mutex_);
    if (!closeCode_) closeCode_ = code;
    changed_.notify_all();
  }

  /// Hands over a message once it is asked for one. False when none is wanted for so long.
  bool say(Message message, std::chrono::milliseconds patience = std::chrono::seconds(20)) {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, patience, [this] { return receiver_ != nullptr; })) return false;
    auto const receiver = std::exchange(receiver_, nullptr);
    lock.unlock();
    receiver(std::move(message));
    return true;
  }
  bool say(std::string text) { return say({Message::Kind::text, std::move(text)}); }

  /// The client has gone.
  void leave() {
    Receiver dropped;
    std::lock_guard const lock(mutex_);
    std::swap(dropped, receiver_);
  }

  /// All results once `count` of them are final, or as many as come in time.
  [[nodiscard]] std::vector<Deepgram::ResultDTO> results(std::size_t finalCount) {
    std::vector<Deepgram::ResultDTO> found;
    waitFor([&] {
      found.clear();
      std::size_t finals = 0;
      for (auto const& text : sent_) {
        if (text.find(R"("type":"Results")") == std::string::npos) continue;
        found.push_back(json::decode<Deepgram::ResultDTO>(text));
        if (found.back().isFinal) ++finals;
      }
      return finals >= finalCount;
    });
    return found;
  }

  /// How this end closed the connection.
  [[nodiscard]] std::optional<CloseCode> closeCode() {
    waitFor([this] { return closeCode_.has_value(); });
    return closeCode_;
  }

  /// What came last.
  [[nodiscard]] std::string lastText() const {
    std::lock_guard const lock(mutex_);
    return sent_.empty() ? "" : sent_.back();
  }

 private:
  template <class Predicate>
  void waitFor(Predicate predicate) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(60), predicate);
  }

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  Receiver receiver_;
  std::vector<std::string> sent_;
  std::optional<CloseCode> closeCode_;
};

}  // namespace vek::test
