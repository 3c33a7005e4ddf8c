// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/URLSessionWebSocketTask.hpp"

namespace vek::test {

/// Sockets that tell of each binary message when it has been handed to the system.
class ObservedSession final : public URLSession {
 public:
  using OnSent = std::function<void()>;

  ObservedSession(std::shared_ptr<URLSession> session, OnSent onSent)
      : session_(std::move(session)), onSent_(std::move(onSent)) {}

  std::shared_ptr<URLSessionWebSocketTask> webSocketTask(HTTPRequest request) override {
    return std::make_shared<Socket>(session_->webSocketTask(std::move(request)), onSent_);
  }

 private:
  class Socket final : public URLSessionWebSocketTask {
   public:
    Socket(std::shared_ptr<URLSessionWebSocketTask> task, OnSent onSent)
        : task_(std::move(task)), onSent_(std::move(onSent)) {}

    void setDelegate(std::weak_ptr<URLSessionWebSocketDelegate> delegate) override {
      task_->setDelegate(std::move(delegate));
    }
    void resume() override { task_->resume(); }
    void send(WebSocketMessage message, SendCompletion done) override {
      if (message.kind == WebSocketMessage::Kind::text) {
        return task_->send(std::move(message), std::move(done));
      }
      task_->send(std::move(message),
                  [onSent = onSent_, done = std::move(done)](std::exception_ptr error) {
                    if (!error) onSent();
                    done(std::move(error));
                  });
    }
    void receive(ReceiveCompletion done) override { task_->receive(std::move(done)); }
    void cancel(CloseCode code, std::optional<std::string> reason) override {
      task_->cancel(code, std::move(reason));
    }

   private:
    std::shared_ptr<URLSessionWebSocketTask> task_;
    OnSent onSent_;
  };

  std::shared_ptr<URLSession> session_;
  OnSent onSent_;
};

/// Makes sessions of this process's deployment that are observed so.
inline auto observedSessions(ObservedSession::OnSent onSent) {
  return [onSent = std::move(onSent)](std::weak_ptr<URLSessionWebSocketDelegate> delegate) {
    return std::make_shared<ObservedSession>(
        URLSession::make(URLSession::Configuration::defaultSessionConfiguration(),
                         std::move(delegate)),
        onSent);
  };
}

}  // namespace vek::test
