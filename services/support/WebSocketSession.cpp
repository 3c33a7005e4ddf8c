// SPDX-License-Identifier: MIT
// Includes Beast's WebSocket, which takes about a minute to compile.
#include "services/support/WebSocketSession.hpp"

#include <algorithm>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/ssl.hpp>
#include <boost/beast/websocket.hpp>
#include <deque>
#include <optional>

#include "platform/Log.hpp"

namespace vek::services {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
namespace websocket = beast::websocket;
using Error = boost::system::error_code;

namespace {

/// What may wait for a client that reads too slowly, or not at all.
constexpr std::size_t outgoingLimit = 1 << 20;

/// Everything but the public operations runs on the connection's strand.
class WebSocketSession final : public Connection, public WebSocket {
 public:
  WebSocketSession(Stream stream, std::shared_ptr<HTTPServerState> state)
      : Connection(std::move(state)),
        stream_(std::move(stream)),
        timer_(stream_.get_executor()),
        running_(stream_.get_executor()) {
    beast::get_lowest_layer(stream_).expires_never();
    stream_.set_option(websocket::stream_base::timeout{this->state().configuration.requestTimeout,
                                                       websocket::stream_base::none(), false});
    stream_.read_message_max(this->state().configuration.messageLimit);
  }

  void accept(http::request<http::string_body> const& request, WebSocketHandler accepted) {
    stream_.async_accept(request, [self = self(), accepted = std::move(accepted)](Error error) {
      if (error) return self->end();
      if (self->state().isStopping) return self->stop();
      accepted(self);
    });
  }

  void stop() override { close(CloseCode::goingAway, "The server stops."); }
  void abort() override {
    perform([](WebSocketSession& self) { self.end(); });
  }

  void receive(Receiver receiver) override {
    perform([receiver = std::move(receiver)](WebSocketSession& self) mutable {
      if (!self.close_) self.read(std::move(receiver));
    });
  }

  void send(std::string text) override {
    perform([text = std::move(text)](WebSocketSession& self) mutable {
      if (!self.close_) self.enqueue(std::move(text));
    });
  }

  void close(CloseCode code, std::string reason) override {
    perform([code, reason = std::move(reason)](WebSocketSession& self) {
      self.beginClose(code, reason);
    });
  }

 private:
  std::shared_ptr<WebSocketSession> self() {
    return std::static_pointer_cast<WebSocketSession>(shared_from_this());
  }

  /// Runs `work` on the strand, unless the connection has ended: then the server may have, too, and
  /// nobody would run it.
  template <class Work>
  void perform(Work work) {
    std::lock_guard lock(mutex_);
    if (!running_.owns_work()) return;
    asio::post(running_.get_executor(),
               [self = self(), work = std::move(work)]() mutable { work(*self); });
  }

  void read(Receiver receiver) {
    auto const patience = state().configuration.messageTimeout;
    startTimer(patience, [](WebSocketSession& self) {
      self.beginClose(CloseCode::internalError, "No message came for too long.");
    });
    stream_.async_read(
        incoming_, [self = self(), receiver = std::move(receiver)](Error error, std::size_t) {
          // While this side closes the connection, that is what brings it to its end.
          if (self->close_) return;
          if (error) return self->end();
          self->stopTimer();
          auto const kind = self->stream_.got_text() ? Message::Kind::text : Message::Kind::binary;
          Message message{kind, beast::buffers_to_string(self->incoming_.data())};
          self->incoming_.clear();
          receiver(std::move(message));
        });
  }

  void enqueue(std::string text) {
    outgoingLength_ += text.size();
    if (outgoingLength_ > outgoingLimit) {
      Logger("websocket").error("a client does not read what it is sent");
      return end();
    }
    outgoing_.push_back(std::move(text));
    if (outgoing_.size() == 1) writeNext();
  }

  void writeNext() {
    stream_.text(true);
    stream_.async_write(asio::buffer(outgoing_.front()), [self = self()](Error error, std::size_t) {
      if (error) return self->end();
      self->written();
    });
  }

  void written() {
    outgoingLength_ -= outgoing_.front().size();
    outgoing_.pop_front();
    if (!outgoing_.empty()) return writeNext();
    if (close_) sendClose();
  }

  void beginClose(CloseCode code, std::string_view reason) {
    if (close_) return;
    auto const fitting = reason.substr(0, websocket::reason_string::static_capacity);
    close_.emplace(static_cast<websocket::close_code>(code), fitting);
    startTimer(closeTimeout, [](WebSocketSession& self) { self.end(); });
    if (outgoing_.empty()) sendClose();
  }

  void sendClose() {
    stream_.async_close(*close_, [self = self()](Error) { self->end(); });
  }

  void end() {
    stopTimer();
    beast::get_lowest_layer(stream_).close();
    std::lock_guard lock(mutex_);
    running_.reset();
  }

  template <class Action>
  void startTimer(std::chrono::milliseconds time, Action action) {
    timer_.expires_after(time);
    timer_.async_wait([self = self(), action](Error) {
      // It may have been started anew when this was on its way.
      if (self->timer_.expiry() <= std::chrono::steady_clock::now()) action(*self);
    });
  }

  void stopTimer() { timer_.expires_at(std::chrono::steady_clock::time_point::max()); }

  websocket::stream<Stream> stream_;
  asio::steady_timer timer_;
  beast::flat_buffer incoming_;
  /// The first is on its way.
  std::deque<std::string> outgoing_;
  std::size_t outgoingLength_ = 0;
  /// Set once this side ends the connection.
  std::optional<websocket::close_reason> close_;
  std::mutex mutex_;
  /// Keeps the server's threads running until the connection has ended.
  asio::executor_work_guard<asio::any_io_executor> running_;
};

}  // namespace

void acceptWebSocket(Connection::Stream stream, http::request<http::string_body> const& request,
                     std::shared_ptr<HTTPServerState> state, WebSocketHandler accepted) {
  std::make_shared<WebSocketSession>(std::move(stream), std::move(state))
      ->accept(request, std::move(accepted));
}

}  // namespace vek::services
