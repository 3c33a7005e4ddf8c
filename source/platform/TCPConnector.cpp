// SPDX-License-Identifier: MIT
#include "platform/TCPConnector.hpp"

#include <fmt/format.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>
#include <charconv>
#include <vector>

#include "platform/WebSocketError.hpp"

namespace vek {
namespace {

namespace asio = boost::asio;
using tcp = asio::ip::tcp;
using Error = boost::system::error_code;
using Code = WebSocketError::Code;

constexpr std::chrono::milliseconds stagger{250};
constexpr std::size_t largestAnswer = 16 << 10;

/// The status of an HTTP answer; 0 when it is none.
int statusOf(std::string_view answer) {
  if (!answer.starts_with("HTTP/1.") || answer.size() < 12 || answer[8] != ' ') return 0;
  int status = 0;
  std::from_chars(answer.data() + 9, answer.data() + 12, status);
  return status;
}

/// Small messages go out at once, and an other side that has gone without a word is noticed within
/// half a minute also while nothing is sent.
void setOptions(int descriptor) {
  auto const set = [descriptor](int level, int option, int value) {
    setsockopt(descriptor, level, option, &value, sizeof value);
  };
  set(IPPROTO_TCP, TCP_NODELAY, 1);
  set(SOL_SOCKET, SO_KEEPALIVE, 1);
  set(IPPROTO_TCP, TCP_KEEPIDLE, 10);
  set(IPPROTO_TCP, TCP_KEEPINTVL, 5);
  set(IPPROTO_TCP, TCP_KEEPCNT, 4);
}

class Connector final : public TCPConnector, public std::enable_shared_from_this<Connector> {
 public:
  Connector(asio::io_context& loop, Target target, Completion done)
      : loop_(loop), target_(std::move(target)), done_(std::move(done)) {}

  void start() {
    auto const& [host, port, proxy] = target_;
    if (proxy && proxy->scheme != "http") {
      return asio::post(loop_, [self = shared_from_this()] {
        self->fail(Code::cannotConnect,
                   "there is no way through proxies of the kind " + self->target_.proxy->scheme);
      });
    }
    resolver_.async_resolve(
        proxy ? proxy->host : host, std::to_string(proxy ? proxy->port : port),
        tcp::resolver::numeric_service,
        [self = shared_from_this()](Error error, tcp::resolver::results_type const& found) {
          if (!self->done_) return;
          if (error) return self->fail(Code::cannotFindHost, error.message());
          self->endpoints_.assign(found.begin(), found.end());
          self->tryNext();
        });
  }

  void cancel() override {
    done_ = nullptr;
    resolver_.cancel();
    endAttempts();
  }

 private:
  void tryNext() {
    if (next_ == endpoints_.size()) return;
    auto const socket = sockets_.emplace_back(std::make_shared<tcp::socket>(loop_));
    socket->async_connect(endpoints_[next_++], [self = shared_from_this(), socket](Error error) {
      if (self->done_) self->attempted(socket, error);
    });
    stagger_.expires_after(stagger);
    stagger_.async_wait([self = shared_from_this()](Error error) {
      if (!error && self->done_) self->tryNext();
    });
  }

  void attempted(std::shared_ptr<tcp::socket> const& socket, Error error) {
    std::erase(sockets_, socket);
    if (!error) {
      endAttempts();
      setOptions(socket->native_handle());
      return target_.proxy ? askForTunnel(socket) : succeed(*socket);
    }
    if (sockets_.empty() && next_ == endpoints_.size()) {
      return fail(Code::cannotConnect, error.message());
    }
    if (sockets_.empty()) tryNext();
  }

  void endAttempts() {
    stagger_.cancel();
    Error ignored;
    for (auto const& socket : sockets_) std::ignore = socket->close(ignored);
    sockets_.clear();
  }

  void askForTunnel(std::shared_ptr<tcp::socket> const& socket) {
    sockets_.push_back(socket);
    std::string const place = hostAndPort(target_.host, target_.port);
    text_ = fmt::format("CONNECT {0} HTTP/1.1\r\nHost: {0}\r\n", place);
    if (auto const& value = target_.proxy->authorization; !value.empty()) {
      text_ += "Proxy-Authorization: " + value + "\r\n";
    }
    text_ += "\r\n";
    asio::async_write(*socket, asio::buffer(text_),
                      [self = shared_from_this(), socket](Error error, std::size_t) {
                        if (!self->done_) return;
                        if (error) return self->fail(Code::cannotConnect, error.message());
                        self->readAnswer(socket);
                      });
  }

  void readAnswer(std::shared_ptr<tcp::socket> const& socket) {
    text_.clear();
    asio::async_read_until(*socket, asio::dynamic_buffer(text_, largestAnswer), "\r\n\r\n",
                           [self = shared_from_this(), socket](Error error, std::size_t size) {
                             if (!self->done_) return;
                             if (error) return self->fail(Code::cannotConnect, error.message());
                             self->answered(*socket, size);
                           });
  }

  void answered(tcp::socket& socket, std::size_t size) {
    int const status = statusOf(text_);
    if (status / 100 != 2) {
      return fail(Code::cannotConnect,
                  status == 0 ? "it does not speak HTTP" : fmt::format("it answered {}", status));
    }
    // The server speaks second, so that what comes now is not the server's.
    if (size != text_.size()) return fail(Code::cannotConnect, "it said more than it may");
    succeed(socket);
  }

  void succeed(tcp::socket& socket) {
    auto const done = std::exchange(done_, nullptr);
    done(Result<int>(socket.release()));
  }

  void fail(Code code, std::string const& detail) {
    if (!done_) return;
    auto const done = std::exchange(done_, nullptr);
    endAttempts();
    std::string const whom = target_.proxy ? "the proxy " + target_.proxy->host : target_.host;
    done(std::make_exception_ptr(WebSocketError(code, whom + ": " + detail)));
  }

  asio::io_context& loop_;
  Target const target_;
  Completion done_;
  tcp::resolver resolver_{loop_};
  asio::steady_timer stagger_{loop_};
  std::vector<tcp::endpoint> endpoints_;
  std::size_t next_ = 0;
  std::vector<std::shared_ptr<tcp::socket>> sockets_;  // that try, or the one that speaks
  std::string text_;
};

}  // namespace

std::shared_ptr<TCPConnector> TCPConnector::start(asio::io_context& loop, Target target,
                                                  Completion done) {
  auto const connector = std::make_shared<Connector>(loop, std::move(target), std::move(done));
  connector->start();
  return connector;
}

std::string hostAndPort(std::string const& host, std::uint16_t port) {
  bool const isAddress = host.find(':') != std::string::npos;
  return fmt::format(fmt::runtime(isAddress ? "[{}]:{}" : "{}:{}"), host, port);
}

}  // namespace vek
