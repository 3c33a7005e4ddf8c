// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/URLSessionWebSocketTask.hpp"
#include "support/Journal.hpp"

namespace vek::test {

/// A socket without a network: it writes down what it is asked, and the test plays the other side.
/// Completions come inside the calls that cause them, so that a lock held over a call shows.
class ScriptedWebSocket final : public URLSessionWebSocketTask {
 public:
  ScriptedWebSocket(std::string name, std::shared_ptr<Journal> journal, HTTPRequest request)
      : name_(std::move(name)), journal_(std::move(journal)), request_(std::move(request)) {}
  ~ScriptedWebSocket() override { end(); }

  [[nodiscard]] HTTPRequest const& request() const { return request_; }

  void setDelegate(std::weak_ptr<URLSessionWebSocketDelegate> delegate) override {
    add("tells its delegate");
    delegate_ = std::move(delegate);
  }
  void resume() override { add("connects"); }
  void send(WebSocketMessage message, SendCompletion done) override {
    bool const isText = message.kind == WebSocketMessage::Kind::text;
    add("sends " + (isText ? message.bytes : std::to_string(message.bytes.size()) + " bytes"));
    std::unique_lock lock(mutex_);
    lastSent_ = std::move(message.bytes);
    if (holdsSends_ && !isCancelled_) return sends_.push_back(std::move(done));
    auto const error = isCancelled_ ? failure(WebSocketError::Code::cancelled) : sendError_;
    lock.unlock();
    done(error);
  }
  void receive(ReceiveCompletion done) override {
    add("reads");
    std::unique_lock lock(mutex_);
    if (!isCancelled_) return reads_.push_back(std::move(done));
    lock.unlock();
    done(failure(WebSocketError::Code::cancelled));
  }
  void cancel(CloseCode code, std::optional<std::string> reason) override {
    add("closes with " + std::to_string(static_cast<int>(code)) + reason.value_or(""));
    end();
  }

  /// From now on sends wait for `finishSends`, or end with `error`.
  void holdSends() {
    std::lock_guard const lock(mutex_);
    holdsSends_ = true;
  }
  void failSends(std::exception_ptr error) {
    std::lock_guard const lock(mutex_);
    sendError_ = std::move(error);
  }
  void finishSends() {
    std::unique_lock lock(mutex_);
    holdsSends_ = false;
    auto const sends = std::exchange(sends_, {});
    lock.unlock();
    for (auto const& done : sends) done(nullptr);
  }

  void open(std::optional<std::string> protocol) {
    if (auto const delegate = delegate_.lock())
      delegate->webSocketTaskDidOpen(*this, std::move(protocol));
  }
  void deliver(std::string bytes, WebSocketMessage::Kind kind = WebSocketMessage::Kind::text) {
    takeRead()(WebSocketMessage{kind, std::move(bytes)});
  }
  void failRead(WebSocketError::Code code) { takeRead()(failure(code)); }

  [[nodiscard]] bool isReading() const {
    std::lock_guard const lock(mutex_);
    return !reads_.empty();
  }
  [[nodiscard]] std::string lastSent() const {
    std::lock_guard const lock(mutex_);
    return lastSent_;
  }

  static std::exception_ptr failure(WebSocketError::Code code) {
    return std::make_exception_ptr(WebSocketError(code, "scripted"));
  }

  /// Takes the read that is due, if any, to be answered when the socket has no say in it any more.
  ReceiveCompletion takeRead() {
    std::lock_guard const lock(mutex_);
    if (reads_.empty()) return nullptr;
    auto read = std::move(reads_.front());
    reads_.erase(reads_.begin());
    return read;
  }

 private:
  void add(std::string const& entry) { journal_->add(name_ + " " + entry); }
  void end() {
    std::unique_lock lock(mutex_);
    isCancelled_ = true;
    auto const sends = std::exchange(sends_, {});
    auto const reads = std::exchange(reads_, {});
    lock.unlock();
    for (auto const& done : sends) done(failure(WebSocketError::Code::cancelled));
    for (auto const& done : reads) done(failure(WebSocketError::Code::cancelled));
  }

  std::string name_;
  std::shared_ptr<Journal> journal_;
  HTTPRequest request_;
  std::weak_ptr<URLSessionWebSocketDelegate> delegate_;
  mutable std::mutex mutex_;
  std::vector<SendCompletion> sends_;
  std::vector<ReceiveCompletion> reads_;
  std::string lastSent_;
  std::exception_ptr sendError_;
  bool holdsSends_ = false;
  bool isCancelled_ = false;
};

}  // namespace vek::test
