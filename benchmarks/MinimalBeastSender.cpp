// SPDX-License-Identifier: MIT
#include "MinimalBeastSender.hpp"

#include <boost/asio/connect.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/ssl/ssl_stream.hpp>
#include <boost/beast/websocket/ssl.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <deque>
#include <thread>

namespace vek::test {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
using tcp = asio::ip::tcp;
using Error = boost::system::error_code;

class Sender final : public MinimalBeastSender {
 public:
  Sender(int port, std::string const& target, std::filesystem::path const& authority) {
    tls_.load_verify_file(authority.string());
    beast::get_lowest_layer(socket_).connect(
        {asio::ip::address_v4::loopback(), static_cast<std::uint16_t>(port)});
    beast::get_lowest_layer(socket_).set_option(tcp::no_delay(true));
    socket_.next_layer().handshake(asio::ssl::stream_base::client);
    socket_.handshake("localhost", target);
    socket_.binary(true);
    read();
    thread_ = std::thread([this] { loop_.run(); });
  }
  ~Sender() override {
    asio::post(loop_, [this] {
      socket_.async_close(beast::websocket::close_code::going_away, [](Error) {});
    });
    thread_.join();
  }

  void send(std::string message) override {
    asio::post(loop_, [this, message = std::move(message)]() mutable {
      waiting_.push_back(std::move(message));
      if (waiting_.size() == 1) write();
    });
  }

 private:
  void write() {
    socket_.async_write(asio::buffer(waiting_.front()), [this](Error error, std::size_t) {
      if (error) return;
      waiting_.pop_front();
      if (!waiting_.empty()) write();
    });
  }
  void read() {
    socket_.async_read(received_, [this](Error error, std::size_t size) {
      if (error) return;
      received_.consume(size);
      read();
    });
  }

  asio::io_context loop_{1};
  asio::ssl::context tls_{asio::ssl::context::tls_client};
  beast::websocket::stream<beast::ssl_stream<tcp::socket>> socket_{loop_, tls_};
  std::deque<std::string> waiting_;
  beast::flat_buffer received_;
  std::thread thread_;
};

}  // namespace

std::unique_ptr<MinimalBeastSender> MinimalBeastSender::connect(
    int port, std::string const& target, std::filesystem::path const& authority) {
  return std::make_unique<Sender>(port, target, authority);
}

}  // namespace vek::test
