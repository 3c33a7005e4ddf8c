// SPDX-License-Identifier: MIT
// Includes Beast, which takes about a minute to compile.
#include "services/support/HTTPServer.hpp"

#include <pthread.h>

#include "services/support/WebSocketSession.hpp"

#include <boost/asio/dispatch.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/ssl.hpp>
#include <boost/beast/websocket/rfc6455.hpp>
#include <condition_variable>
#include <thread>

namespace vek::services {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
namespace ssl = asio::ssl;
using tcp = asio::ip::tcp;
using Error = boost::system::error_code;

namespace {

constexpr std::uint32_t headerLimit = 16 << 10;
constexpr std::chrono::seconds stopTimeout{3};

/// Agrees on HTTP/1.1 with a client that offers protocols.
int selectProtocol(SSL*, unsigned char const** selected, unsigned char* length,
                   unsigned char const* offered, unsigned int offeredLength, void*) {
  static constexpr unsigned char http11[] = "\x08http/1.1";
  unsigned char* choice = nullptr;
  if (SSL_select_next_proto(&choice, length, http11, sizeof http11 - 1, offered, offeredLength) !=
      OPENSSL_NPN_NEGOTIATED) {
    return SSL_TLSEXT_ERR_NOACK;
  }
  *selected = choice;
  return SSL_TLSEXT_ERR_OK;
}

/// One connection: handshake, then request and answer in turn. Everything runs on its strand.
class Session final : public Connection {
 public:
  Session(tcp::socket socket, std::shared_ptr<HTTPServerState> state)
      : Connection(std::move(state)),
        executor_(socket.get_executor()),
        stream_(std::move(socket), this->state().tls) {
    Error gone;
    auto const peer = transport().socket().remote_endpoint(gone);
    if (!gone) peer_ = peer.address().to_string();
  }

  void start() {
    transport().expires_after(state().configuration.requestTimeout);
    stream_.async_handshake(ssl::stream_base::server, [self = self()](Error error) {
      if (!error) self->readHeader();
    });
  }

  /// Ends the connection now if it rests, or else after the answer under way.
  void stop() override {
    asio::dispatch(executor_, [self = self()] {
      if (self->resting_) self->transport().cancel();
    });
  }

  void abort() override {
    asio::dispatch(executor_, [self = self()] {
      if (!self->isHandedOver_) self->transport().close();
    });
  }

 private:
  std::shared_ptr<Session> self() { return std::static_pointer_cast<Session>(shared_from_this()); }
  beast::tcp_stream& transport() { return beast::get_lowest_layer(stream_); }

  void readHeader() {
    if (state().isStopping) return close();
    parser_.emplace();
    parser_->header_limit(headerLimit);
    parser_->body_limit(state().configuration.bodyLimit);
    transport().expires_after(state().configuration.idleTimeout);
    resting_ = true;
    isHead_ = false;
    http::async_read_header(stream_, buffer_, *parser_, [self = self()](Error error, std::size_t) {
      self->resting_ = false;
      self->headerRead(error);
    });
  }

  void headerRead(Error error) {
    if (error) return refuse(error);
    transport().expires_after(state().configuration.requestTimeout);
    auto const expectation = parser_->get()[http::field::expect];
    if (beast::iequals(expectation, "100-continue")) {
      response_ = {http::status::continue_, 11};
      return http::async_write(stream_, response_, [self = self()](Error failure, std::size_t) {
        if (!failure) self->readBody();
      });
    }
    readBody();
  }

  void readBody() {
    http::async_read(stream_, buffer_, *parser_, [self = self()](Error error, std::size_t) {
      if (error) return self->refuse(error);
      self->handle();
    });
  }

  /// Answers what could not be read as a request, or just closes when nobody waits for an answer.
  void refuse(Error error) {
    if (error == http::error::body_limit) {
      lingers_ = true;
      return write(Response::refusal(413, "The request is too large."), false);
    }
    if (error == http::error::header_limit) {
      lingers_ = true;
      return write(Response::refusal(431, "The headers of the request are too large."), false);
    }
    bool const isMalformed = error.category() == http::make_error_code(http::error{}).category() &&
                             error != http::error::end_of_stream &&
                             error != http::error::partial_message;
    if (isMalformed) return write(Response::refusal(400, "This is no HTTP request."), false);
    close();
  }

  void handle() {
    message_ = parser_->release();
    auto const keepsAlive = message_.keep_alive();
    isHead_ = message_.method() == http::verb::head;
    Request request;
    request.method = message_.method_string();
    for (auto const& header : message_) {
      request.headers.emplace_back(header.name_string(), header.value());
    }
    request.peer = peer_;
    request.body = std::move(message_.body());
    request.asksForWebSocket = beast::websocket::is_upgrade(message_);
    if (!readTarget(message_.target(), request)) {
      return write(Response::refusal(400, "The URL is malformed."), keepsAlive);
    }
    transport().expires_never();
    // The work guard keeps the threads running while the answer is being made elsewhere.
    auto reply = [self = self(), keepsAlive,
                  work = asio::make_work_guard(executor_)](Response answer) {
      asio::dispatch(self->executor_, [self, keepsAlive, answer = std::move(answer)] {
        if (answer.webSocket) return self->handOver(answer.webSocket);
        self->write(answer, keepsAlive);
      });
    };
    state().handler(std::move(request), std::move(reply));
  }

  void handOver(WebSocketHandler const& handler) {
    // No message of a WebSocket may come before the answer that agrees to it.
    if (buffer_.size() > 0) return close();
    isHandedOver_ = true;
    acceptWebSocket(std::move(stream_), message_, sharedState(), handler);
  }

  void write(Response const& answer, bool keepsAlive) {
    response_ = {static_cast<http::status>(answer.status), 11};
    response_.set(http::field::content_type, answer.contentType);
    response_.set(http::field::cache_control, "no-store");
    for (auto const& [name, value] : answer.headers) response_.insert(name, value);
    if (answer.status == 401) response_.set(http::field::www_authenticate, answer.challenge);
    if (answer.status == 426) response_.set(http::field::upgrade, "websocket");
    response_.keep_alive(keepsAlive && !state().isStopping);
    if (!isHead_) response_.body() = answer.body;
    response_.prepare_payload();
    transport().expires_after(state().configuration.requestTimeout);
    http::async_write(stream_, response_, [self = self()](Error error, std::size_t) {
      if (error) return;
      if (self->response_.keep_alive()) return self->readHeader();
      if (self->lingers_) return self->linger();
      self->close();
    });
  }

  /// Takes what a client still sends after a refusal: closing at once would reset the connection
  /// before the client has read the answer.
  void linger() {
    transport().expires_after(closeTimeout);
    discard();
  }

  void discard() {
    buffer_.clear();
    stream_.async_read_some(buffer_.prepare(64 << 10), [self = self()](Error error, std::size_t) {
      if (error) return self->close();
      self->discard();
    });
  }

  void close() {
    transport().expires_after(state().isStopping ? stoppingCloseTimeout : closeTimeout);
    stream_.async_shutdown([self = self()](Error) {});
  }

  asio::any_io_executor executor_;
  Stream stream_;
  std::string peer_;
  beast::flat_buffer buffer_;
  std::optional<http::request_parser<http::string_body>> parser_;
  http::request<http::string_body> message_;
  http::response<http::string_body> response_;
  bool resting_ = false;
  bool lingers_ = false;
  bool isHead_ = false;
  bool isHandedOver_ = false;
};

}  // namespace

PortInUse::PortInUse(std::uint16_t port)
    : std::runtime_error("Port " + std::to_string(port) + " is in use by another program.") {}

class HTTPServer::Impl : public std::enable_shared_from_this<Impl> {
 public:
  explicit Impl(HTTPServerConfiguration configuration) {
    auto& tls = state_->tls;
    SSL_CTX_set_min_proto_version(tls.native_handle(), TLS1_2_VERSION);
    SSL_CTX_set_alpn_select_cb(tls.native_handle(), selectProtocol, nullptr);
    tls.use_certificate_chain_file(configuration.certificate);
    tls.use_private_key_file(configuration.key, ssl::context::pem);
    state_->configuration = std::move(configuration);
    listen();
  }

  void serve(Handler handler) {
    state_->handler = std::move(handler);
    for (auto& acceptor : acceptors_) accept(acceptor);
    for (int i = 0; i < HTTPServerState::threadCount; ++i) {
      threads_.emplace_back([this] {
        pthread_setname_np(pthread_self(), "https");
        state_->io.run();
      });
    }
  }

  [[nodiscard]] std::uint16_t port() const { return port_; }

  void stop() {
    if (state_->isStopping.exchange(true)) return;
    asio::dispatch(strand_, [this] {
      for (auto& acceptor : acceptors_) acceptor.close();
      for (auto const& connection : state_->aliveConnections()) connection->stop();
    });
    std::jthread watchdog([this](std::stop_token stop) {
      std::mutex mutex;
      std::condition_variable_any wake;
      std::unique_lock lock(mutex);
      wake.wait_for(lock, stop, stopTimeout, [] { return false; });
      if (stop.stop_requested()) return;
      for (auto const& connection : state_->aliveConnections()) connection->abort();
    });
    for (auto& thread : threads_) thread.join();
  }

 private:
  /// Both addresses share one port; with port 0 the one that the first was given.
  void listen() {
    constexpr int attempts = 20;
    for (int attempt = 1;; ++attempt) {
      port_ = state_->configuration.port;
      acceptors_.clear();
      try {
        listen(asio::ip::address_v4::loopback());
        listen(asio::ip::address_v6::loopback());
        return;
      } catch (boost::system::system_error const& error) {
        if (error.code() != asio::error::address_in_use) throw;
        if (state_->configuration.port != 0 || attempt == attempts) throw PortInUse(port_);
      }
    }
  }

  void listen(asio::ip::address const& address) {
    tcp::endpoint const endpoint(address, port_);
    tcp::acceptor acceptor(strand_);
    try {
      acceptor.open(endpoint.protocol());
      acceptor.set_option(asio::socket_base::reuse_address(true));
      acceptor.bind(endpoint);
    } catch (boost::system::system_error const& error) {
      // A machine without IPv6 is served on the other address alone.
      bool const lacksIPv6 = error.code() == boost::system::errc::address_family_not_supported ||
                             error.code() == boost::system::errc::address_not_available;
      if (address.is_v6() && lacksIPv6) return;
      throw;
    }
    acceptor.listen();
    port_ = acceptor.local_endpoint().port();
    acceptors_.push_back(std::move(acceptor));
  }

  void accept(tcp::acceptor& acceptor) {
    acceptor.async_accept(asio::make_strand(state_->io),
                          [this, &acceptor](Error error, tcp::socket socket) {
                            if (!acceptor.is_open()) return;
                            if (error) return acceptLater(acceptor);
                            if (state_->hasRoom()) {
                              Error ignored;
                              std::ignore = socket.set_option(tcp::no_delay(true), ignored);
                              std::make_shared<Session>(std::move(socket), state_)->start();
                            }
                            accept(acceptor);
                          });
  }

  /// After a failure, such as no file descriptor left, a moment passes before the next try.
  void acceptLater(tcp::acceptor& acceptor) {
    auto timer = std::make_shared<asio::steady_timer>(strand_, std::chrono::milliseconds(100));
    timer->async_wait([this, &acceptor, timer](Error) {
      if (acceptor.is_open()) accept(acceptor);
    });
  }

  std::shared_ptr<HTTPServerState> state_ = std::make_shared<HTTPServerState>();
  asio::strand<asio::io_context::executor_type> strand_ = asio::make_strand(state_->io);
  std::vector<tcp::acceptor> acceptors_;
  std::uint16_t port_ = 0;
  std::vector<std::thread> threads_;
};

HTTPServer::HTTPServer(HTTPServerConfiguration configuration)
    : impl_(std::make_shared<Impl>(std::move(configuration))) {}

HTTPServer::~HTTPServer() {
  stop();
}

std::uint16_t HTTPServer::port() const {
  return impl_->port();
}

void HTTPServer::serve(Handler handler) {
  impl_->serve(std::move(handler));
}

void HTTPServer::stop() {
  impl_->stop();
}

}  // namespace vek::services
