// SPDX-License-Identifier: MIT
// The only file of the program that includes Beast, which takes about a minute to compile.
#define BOOST_BEAST_USE_STD_STRING_VIEW
#include "platform/WebSocketStream.hpp"

#include <fmt/format.h>
#include <netinet/tcp.h>

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/address.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/ssl/ssl_stream.hpp>
#include <boost/beast/websocket/stream.hpp>

#include "platform/TCPConnector.hpp"
#include "platform/TrustedCertificates.hpp"

namespace vek {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace ssl = asio::ssl;
namespace websocket = beast::websocket;
using tcp = asio::ip::tcp;
using Clock = std::chrono::steady_clock;
using Error = boost::system::error_code;
using Code = WebSocketError::Code;

/// A message up to this size goes out in one piece.
constexpr std::size_t writeBufferSize = 64 << 10;
/// What a large message leaves behind is given back beyond this.
constexpr std::size_t readBufferSize = 64 << 10;
/// Longer than the system takes to ask an idle connection again.
constexpr std::chrono::seconds unheardLimit{30};

/// Bytes in the clear or through TLS: one type for both, since each would be compiled for half a
/// minute.
class Wire {
 public:
  using Socket = asio::basic_stream_socket<tcp, asio::io_context::executor_type>;
  using executor_type = Socket::executor_type;

  Wire(asio::io_context& loop, ssl::context& context, bool isSecure)
      : tls_(Socket(loop), context), isSecure_(isSecure) {}

  executor_type get_executor() { return socket().get_executor(); }
  Socket& socket() { return tls_.next_layer(); }
  beast::ssl_stream<Socket>& tls() { return tls_; }
  [[nodiscard]] Clock::time_point lastProgress() const { return lastProgress_; }
  void noteProgress() { lastProgress_ = Clock::now(); }

  void close() {
    Error ignored;
    std::ignore = socket().close(ignored);
  }

  template <class Buffers, class Handler>
  void async_read_some(Buffers const& buffers, Handler&& handler) {
    if (isSecure_) {
      tls_.async_read_some(buffers, std::forward<Handler>(handler));
    } else {
      socket().async_read_some(buffers, std::forward<Handler>(handler));
    }
  }

  template <class Buffers, class Handler>
  void async_write_some(Buffers const& buffers, Handler&& handler) {
    // There is a next piece only because the last one has gone.
    noteProgress();
    if (isSecure_) {
      tls_.async_write_some(buffers, std::forward<Handler>(handler));
    } else {
      socket().async_write_some(buffers, std::forward<Handler>(handler));
    }
  }

  /// The WebSocket library's names for the end of a connection, which needs no words after both
  /// close frames.
  template <class Handler>
  friend void async_teardown(beast::role_type, Wire& wire, Handler&& handler) {
    wire.close();
    asio::post(wire.get_executor(),
               beast::bind_front_handler(std::forward<Handler>(handler), Error()));
  }
  friend void beast_close_socket(Wire& wire) { wire.close(); }

 private:
  beast::ssl_stream<Socket> tls_;
  bool const isSecure_;
  Clock::time_point lastProgress_;
};

std::exception_ptr error(Code code, std::string const& detail) {
  return std::make_exception_ptr(WebSocketError(code, detail));
}

class BeastStream final : public WebSocketStream, public std::enable_shared_from_this<BeastStream> {
 public:
  BeastStream(asio::io_context& loop, Options options)
      : loop_(loop),
        options_(std::move(options)),
        isSecure_(options_.url.scheme() == "wss"),
        host_(options_.url.address()),
        port_(options_.url.port().value_or(isSecure_ ? 443 : 80)),
        socket_(loop, configure(context_, options_), isSecure_) {}

  void open(Opened done) override {
    opened_ = std::move(done);
    connector_ = TCPConnector::start(loop_, {.host = host_, .port = port_, .proxy = options_.proxy},
                                     [self = shared_from_this()](Result<int> descriptor) {
                                       if (!descriptor) return self->opened(descriptor.error());
                                       self->wire().socket().assign(tcp::v6(), descriptor.value());
                                       if (self->isSecure_) return self->secure();
                                       self->upgrade();
                                     });
  }

  void read(Received done) override {
    socket_.async_read(
        buffer_, [self = shared_from_this(), done = std::move(done)](Error error, std::size_t) {
          if (error) return done(self->readFailure(error));
          done(self->takeMessage());
        });
  }

  void write(WebSocketMessage message, Sent done) override {
    outgoing_ = std::move(message.bytes);
    wire().noteProgress();
    socket_.binary(message.kind == WebSocketMessage::Kind::binary);
    socket_.async_write(
        asio::buffer(outgoing_),
        [self = shared_from_this(), done = std::move(done)](Error error, std::size_t) {
          done(error ? vek::error(Code::notConnected, error.message()) : nullptr);
        });
  }

  void close(std::uint16_t code, std::string const& reason, UniqueFunction<void()> done) override {
    socket_.async_close({static_cast<websocket::close_code>(code), reason},
                        [self = shared_from_this(), done = std::move(done)](Error) { done(); });
  }

  void abort() override {
    if (connector_) connector_->cancel();
    // What a server that reads nothing has not taken would else outlive the socket.
    Error ignored;
    std::ignore = wire().socket().set_option(asio::socket_base::linger(true, 0), ignored);
    wire().close();
  }

  [[nodiscard]] Clock::time_point lastProgress() const override {
    return socket_.next_layer().lastProgress();
  }

  [[nodiscard]] bool isUnheard() override {
    tcp_info info{};
    socklen_t size = sizeof info;
    int const descriptor = wire().socket().native_handle();
    if (getsockopt(descriptor, IPPROTO_TCP, TCP_INFO, &info, &size) != 0) return false;
    return info.tcpi_unacked > 0 &&
           std::chrono::milliseconds(info.tcpi_last_ack_recv) > unheardLimit;
  }

 private:
  static ssl::context& configure(ssl::context& context, Options const& options) {
    static constexpr unsigned char protocols[] = "\x08http/1.1";
    SSL_CTX* const tls = context.native_handle();
    SSL_CTX_set_min_proto_version(tls, TLS1_2_VERSION);
    SSL_CTX_set_alpn_protos(tls, protocols, sizeof protocols - 1);
    SSL_CTX_set_verify(tls, SSL_VERIFY_PEER, nullptr);
    trustCertificates(tls, options.trustedAuthority);
    return context;
  }

  Wire& wire() { return socket_.next_layer(); }

  void secure() {
    SSL* const tls = wire().tls().native_handle();
    Error isName;
    asio::ip::make_address(host_, isName);
    if (isName) {
      SSL_set_tlsext_host_name(tls, host_.c_str());
      SSL_set1_host(tls, host_.c_str());
    } else {
      X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(tls), host_.c_str());
    }
    wire().tls().async_handshake(ssl::stream_base::client,
                                 [self = shared_from_this(), tls](Error error) {
                                   if (!error) return self->upgrade();
                                   self->opened(self->handshakeFailure(tls, error));
                                 });
  }

  void upgrade() {
    socket_.set_option(websocket::stream_base::timeout{websocket::stream_base::none(),
                                                       websocket::stream_base::none(), false});
    socket_.set_option(websocket::stream_base::decorator(
        [headers = options_.headers](websocket::request_type& request) {
          for (auto const& [name, value] : headers) request.set(name, value);
        }));
    socket_.auto_fragment(false);
    socket_.write_buffer_bytes(writeBufferSize);
    socket_.read_message_max(options_.largestMessage);
    bool const isUsualPort = port_ == (isSecure_ ? 443 : 80);
    socket_.async_handshake(response_, isUsualPort ? host_ : hostAndPort(host_, port_),
                            options_.url.target(), [self = shared_from_this()](Error error) {
                              if (error) return self->opened(self->upgradeFailure(error));
                              self->opened(self->protocol());
                            });
  }

  void opened(Result<std::optional<std::string>> outcome) {
    connector_.reset();
    auto const done = std::exchange(opened_, nullptr);
    done(std::move(outcome));
  }

  static std::exception_ptr handshakeFailure(SSL* tls, Error error) {
    long const verified = SSL_get_verify_result(tls);
    if (verified == X509_V_OK) return vek::error(Code::cannotConnect, error.message());
    return vek::error(Code::untrustedServer, X509_verify_cert_error_string(verified));
  }

  [[nodiscard]] std::exception_ptr upgradeFailure(Error error) const {
    if (error == websocket::error::upgrade_declined) {
      return vek::error(Code::badServerResponse,
                        fmt::format("it answered {}", response_.result_int()));
    }
    bool const hasEnded =
        error == beast::http::error::end_of_stream || error == beast::http::error::partial_message;
    bool const isAnswer =
        error.category() == make_error_code(websocket::error::closed).category() ||
        error.category() == make_error_code(beast::http::error::end_of_stream).category();
    return vek::error(isAnswer && !hasEnded ? Code::badServerResponse : Code::cannotConnect,
                      error.message());
  }

  [[nodiscard]] std::optional<std::string> protocol() const {
    auto const found = response_.find(beast::http::field::sec_websocket_protocol);
    if (found == response_.end()) return std::nullopt;
    return std::string(found->value());
  }

  [[nodiscard]] std::exception_ptr readFailure(Error error) const {
    if (error == websocket::error::message_too_big) {
      return vek::error(Code::messageTooLong, "");
    }
    if (error == websocket::condition::protocol_violation) {
      return vek::error(Code::protocolError, error.message());
    }
    if (error != websocket::error::closed) return vek::error(Code::notConnected, error.message());
    auto const& [code, given] = socket_.reason();
    std::string reason(given.data(), given.size());
    // They are the server's words, and go into a log by the line.
    std::ranges::replace_if(reason, [](unsigned char c) { return c < ' '; }, ' ');
    return vek::error(Code::notConnected,
                      fmt::format("it was closed with {} \"{}\"", static_cast<int>(code), reason));
  }

  WebSocketMessage takeMessage() {
    using enum WebSocketMessage::Kind;
    WebSocketMessage message{.kind = socket_.got_binary() ? binary : text,
                             .bytes = beast::buffers_to_string(buffer_.data())};
    buffer_.clear();
    if (buffer_.capacity() > readBufferSize) buffer_.shrink_to_fit();
    return message;
  }

  asio::io_context& loop_;
  Options const options_;
  bool const isSecure_;
  std::string const host_;
  std::uint16_t const port_;
  Opened opened_;
  std::shared_ptr<TCPConnector> connector_;
  ssl::context context_{ssl::context::tls_client};
  websocket::stream<Wire> socket_;
  websocket::response_type response_;
  beast::flat_buffer buffer_;
  std::string outgoing_;
};

}  // namespace

std::shared_ptr<WebSocketStream> WebSocketStream::make(asio::io_context& loop, Options options) {
  return std::make_shared<BeastStream>(loop, std::move(options));
}

}  // namespace vek
