// SPDX-License-Identifier: MIT
#include "platform/URLSessionWebSocketTask.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <deque>
#include <utility>

#include "platform/ConnectSpacing.hpp"
#include "platform/Deployment.hpp"
#include "platform/NetworkThread.hpp"
#include "platform/ProxySettings.hpp"
#include "platform/TCPConnector.hpp"
#include "platform/WebSocketStream.hpp"

namespace vek {
namespace {

namespace asio = boost::asio;
using Clock = std::chrono::steady_clock;
using Code = WebSocketError::Code;

/// Messages that nobody has taken: beyond this the server has to wait.
constexpr std::size_t largestInbox = std::size_t{1} << 20U;
constexpr std::size_t largestReason = 123;
constexpr std::chrono::milliseconds longestTick{5000};

/// That of the network thread.
ConnectSpacing& spacing() {
  static auto* const instance = new ConnectSpacing;
  return *instance;
}

std::uint16_t portOf(URLComponents const& url) {
  return url.port().value_or(url.scheme() == "wss" ? 443 : 80);
}

std::exception_ptr error(Code code, std::string const& detail = {}) {
  return std::make_exception_ptr(WebSocketError(code, detail));
}

/// As much of a reason as a close frame can hold, without half a character at the end.
std::string shortened(std::string reason) {
  std::size_t size = std::min(reason.size(), largestReason);
  while (size < reason.size() && (static_cast<unsigned char>(reason[size]) & 0xc0U) == 0x80) --size;
  reason.resize(size);
  return reason;
}

/// A socket. Operations only post what they ask for to the network thread, where all the rest
/// happens, so that there is nothing to lock.
class WebSocketTask final : public URLSessionWebSocketTask,
                            public std::enable_shared_from_this<WebSocketTask> {
 public:
  WebSocketTask(HTTPRequest request, URLSession::Configuration configuration,
                std::weak_ptr<URLSessionWebSocketDelegate> delegate)
      : loop_(NetworkThread::shared().loop()),
        request_(std::move(request)),
        url_(request_.url),
        configuration_(std::move(configuration)),
        // Here, on a thread of the caller's: the environment is no place to read from any other.
        proxy_(proxyFor(url_.address(), url_.scheme() == "wss")),
        delegate_(std::move(delegate)) {}

  void setDelegate(std::weak_ptr<URLSessionWebSocketDelegate> delegate) override {
    post([delegate = std::move(delegate)](WebSocketTask& task) { task.delegate_ = delegate; });
  }

  void resume() override {
    post([](WebSocketTask& task) { task.begin(); });
  }

  void send(WebSocketMessage message, SendCompletion done) override {
    post([message = std::move(message), done = std::move(done)](WebSocketTask& task) mutable {
      task.enqueue({std::move(message), std::move(done)});
    });
  }

  void receive(ReceiveCompletion done) override {
    post([done = std::move(done)](WebSocketTask& task) mutable { task.take(std::move(done)); });
  }

  void cancel(CloseCode code, std::optional<std::string> reason) override {
    post([code, reason = std::move(reason)](WebSocketTask& task) {
      task.close(code, shortened(reason.value_or("")));
    });
  }

 private:
  enum class Phase : std::uint8_t { idle, opening, open, closing, ended };
  struct Outgoing {
    WebSocketMessage message;
    SendCompletion done;
  };

  template <class Work>
  void post(Work work) {
    asio::post(loop_,
               [self = shared_from_this(), work = std::move(work)]() mutable { work(*self); });
  }

  // Opening

  void begin() {
    if (phase_ != Phase::idle) return;
    phase_ = Phase::opening;
    bool const isWebSocket = url_.scheme() == "ws" || url_.scheme() == "wss";
    if (!isWebSocket || !url_.url()) return end(error(Code::other, "this is no WebSocket URL"));
    for (auto const& header : request_.headers) {
      if (header.breaksLine()) {
        return end(error(Code::other, "the header " + header.name + " breaks a line"));
      }
    }
    endAfter(request_.timeout, error(Code::timedOut));
    connect();
  }

  void connect() {
    if (auto const pause = spacing().begin(place_, Clock::now())) {
      tick_.expires_after(*pause);
      return tick_.async_wait([self = shared_from_this()](auto failure) {
        if (!failure && self->phase_ == Phase::opening) self->connect();
      });
    }
    hasBegun_ = true;
    stream_ = WebSocketStream::make(loop_, {.url = url_,
                                            .headers = request_.headers,
                                            .proxy = proxy_,
                                            .trustedAuthority = configuration_.trustedAuthority,
                                            .largestMessage = configuration_.largestMessage});
    stream_->open([self = shared_from_this()](auto protocol) { self->opened(protocol); });
  }

  void opened(Result<std::optional<std::string>> const& protocol) {
    if (phase_ != Phase::opening) return;
    if (!protocol) return end(protocol.error());
    phase_ = Phase::open;
    openedAt_ = Clock::now();
    deadline_.cancel();
    if (auto const delegate = delegate_.lock()) {
      delegate->webSocketTaskDidOpen(*this, protocol.value());
    }
    writeNext();
    readNext();
    watch();
  }

  // Sending

  void enqueue(Outgoing outgoing) {
    if (failure_) return outgoing.done(failure_);
    outbox_.push_back(std::move(outgoing));
    writeNext();
  }

  void writeNext() {
    if (phase_ != Phase::open || isWriting_ || outbox_.empty()) return;
    isWriting_ = true;
    stream_->write(
        std::move(outbox_.front().message),
        [self = shared_from_this()](std::exception_ptr const& failure) { self->written(failure); });
  }

  void written(std::exception_ptr const& failure) {
    if (phase_ == Phase::ended) return;
    if (failure) return end(failure);
    auto const done = std::move(outbox_.front().done);
    outbox_.pop_front();
    isWriting_ = false;
    writeNext();
    done(nullptr);
  }

  // Receiving

  void take(ReceiveCompletion done) {
    if (failure_ && inbox_.empty()) return done(failure_);
    readers_.push_back(std::move(done));
    deliver();
    readNext();
  }

  void readNext() {
    if (phase_ != Phase::open || isReading_ || inboxSize_ >= largestInbox) return;
    isReading_ = true;
    stream_->read([self = shared_from_this()](Result<WebSocketMessage> message) {
      self->isReading_ = false;
      if (self->phase_ != Phase::open) return;
      if (!message) return self->end(message.error());
      self->inboxSize_ += message.value().bytes.size();
      self->inbox_.push_back(std::move(message).value());
      self->readNext();
      self->deliver();
    });
  }

  void deliver() {
    while (!readers_.empty() && !inbox_.empty()) {
      auto const done = std::move(readers_.front());
      auto message = std::move(inbox_.front());
      readers_.pop_front();
      inbox_.pop_front();
      inboxSize_ -= message.bytes.size();
      done(std::move(message));
    }
  }

  // Ending

  void close(CloseCode code, std::string const& reason) {
    if (failure_) return;
    failure_ = error(Code::cancelled);
    inbox_.clear();
    if (phase_ != Phase::open) return end(failure_);
    phase_ = Phase::closing;
    tick_.cancel();
    endAfter(configuration_.closeTimeout, failure_);
    stream_->close(static_cast<std::uint16_t>(code), reason,
                   [self = shared_from_this()] { self->end(self->failure_); });
    // What is being sent ends by itself.
    auto const waiting = outbox_.begin() + (isWriting_ ? 1 : 0);
    std::deque<Outgoing> const unsent(std::make_move_iterator(waiting),
                                      std::make_move_iterator(outbox_.end()));
    outbox_.erase(waiting, outbox_.end());
    fail(unsent, std::exchange(readers_, {}), failure_);
  }

  /// The first reason counts.
  void end(std::exception_ptr const& failure) {
    if (phase_ == Phase::ended) return;
    phase_ = Phase::ended;
    bool const wasCancelled = failure_ != nullptr;
    if (!wasCancelled) failure_ = failure;
    deadline_.cancel();
    tick_.cancel();
    if (stream_) std::exchange(stream_, nullptr)->abort();
    if (openedAt_ && Clock::now() - *openedAt_ >= ConnectSpacing::proof) {
      spacing().proved(place_);
    } else if (hasBegun_ && !wasCancelled) {
      spacing().failed(place_);
    }
    fail(std::exchange(outbox_, {}), std::exchange(readers_, {}), failure_);
  }

  static void fail(std::deque<Outgoing> const& outbox, std::deque<ReceiveCompletion> const& readers,
                   std::exception_ptr const& failure) {
    for (auto const& [message, done] : outbox) done(failure);
    for (auto const& done : readers) done(failure);
  }

  // Time

  void endAfter(std::chrono::milliseconds time, std::exception_ptr failure) {
    deadline_.expires_after(time);
    deadline_.async_wait(
        [self = shared_from_this(), phase = phase_, failure = std::move(failure)](auto stopped) {
          if (!stopped && self->phase_ == phase) self->end(failure);
        });
  }

  /// Looks from time to time whether the network still moves.
  void watch() {
    tick_.expires_after(std::min(longestTick, configuration_.sendTimeout / 4));
    tick_.async_wait([self = shared_from_this()](auto stopped) {
      if (!stopped && self->phase_ == Phase::open) self->check();
    });
  }

  void check() {
    auto const stalled = Clock::now() - stream_->lastProgress();
    if (isWriting_ && stalled >= configuration_.sendTimeout) {
      return end(error(Code::timedOut, "the server takes nothing"));
    }
    if (stream_->isUnheard()) {
      return end(error(Code::notConnected, "the network does not answer"));
    }
    watch();
  }

  asio::io_context& loop_;
  HTTPRequest const request_;
  URLComponents const url_;
  URLSession::Configuration const configuration_;
  std::optional<Proxy> const proxy_;
  std::weak_ptr<URLSessionWebSocketDelegate> delegate_;
  /// What connections are kept apart by.
  std::string const place_ = hostAndPort(url_.address(), portOf(url_));

  Phase phase_ = Phase::idle;
  std::exception_ptr failure_;  // there is one while it is closing, too
  bool hasBegun_ = false;
  std::optional<Clock::time_point> openedAt_;
  std::shared_ptr<WebSocketStream> stream_;
  asio::steady_timer deadline_{loop_};
  asio::steady_timer tick_{loop_};

  std::deque<Outgoing> outbox_;  // the first is under way while isWriting_
  bool isWriting_ = false;
  std::deque<ReceiveCompletion> readers_;
  std::deque<WebSocketMessage> inbox_;
  std::size_t inboxSize_ = 0;
  bool isReading_ = false;
};

class Session final : public URLSession {
 public:
  Session(Configuration configuration, std::weak_ptr<URLSessionWebSocketDelegate> delegate)
      : configuration_(std::move(configuration)), delegate_(std::move(delegate)) {}

  std::shared_ptr<URLSessionWebSocketTask> webSocketTask(HTTPRequest request) override {
    auto task = std::make_shared<WebSocketTask>(std::move(request), configuration_, delegate_);
    auto* const pointer = task.get();
    // What is under way keeps the task itself, so that its owners' last reference is one of its
    // own.
    return {pointer, [task = std::move(task)](auto*) {
              task->cancel(URLSessionWebSocketTask::CloseCode::goingAway, std::nullopt);
            }};
  }

 private:
  Configuration const configuration_;
  std::weak_ptr<URLSessionWebSocketDelegate> const delegate_;
};

}  // namespace

URLSession::Configuration URLSession::Configuration::defaultSessionConfiguration() {
  return {.trustedAuthority = deployment().trustedAuthority};
}

std::shared_ptr<URLSession> URLSession::make(Configuration configuration,
                                             std::weak_ptr<URLSessionWebSocketDelegate> delegate) {
  return std::make_shared<Session>(std::move(configuration), std::move(delegate));
}

}  // namespace vek
