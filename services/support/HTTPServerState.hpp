// SPDX-License-Identifier: MIT
// For the sources of the HTTP server alone: this one includes Beast.
#pragma once

#define BOOST_BEAST_USE_STD_STRING_VIEW
#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/ssl/ssl_stream.hpp>
#include <memory>
#include <mutex>
#include <unordered_set>
#include <vector>

#include "services/support/HTTPServer.hpp"

namespace vek::services {

/// A client's end of a server. It is among the server's connections for as long as it lives.
class Connection : public std::enable_shared_from_this<Connection> {
 public:
  using Stream = boost::beast::ssl_stream<boost::beast::tcp_stream>;

  /// How long a client may take to agree to the end of a connection: less when the server stops.
  static constexpr std::chrono::milliseconds closeTimeout{2000};
  static constexpr std::chrono::milliseconds stoppingCloseTimeout{100};

  explicit Connection(std::shared_ptr<HTTPServerState> state);
  Connection(Connection const&) = delete;
  Connection& operator=(Connection const&) = delete;
  virtual ~Connection();

  /// Ends the connection as soon as is decent. Any thread.
  virtual void stop() = 0;
  /// Ends the connection now, whatever is under way. Any thread.
  virtual void abort() = 0;

 protected:
  [[nodiscard]] HTTPServerState& state() const { return *state_; }
  [[nodiscard]] std::shared_ptr<HTTPServerState> const& sharedState() const { return state_; }

 private:
  std::shared_ptr<HTTPServerState> state_;
};

/// What all connections of a server share. They own it, so that a reply that is dropped after the
/// server has gone still finds its event loop.
struct HTTPServerState {
  static constexpr int threadCount = 2;

  boost::asio::io_context io{threadCount};
  HTTPServerConfiguration configuration;
  Handler handler;
  boost::asio::ssl::context tls{boost::asio::ssl::context::tls_server};
  std::atomic<bool> isStopping = false;
  std::mutex mutex;
  std::unordered_set<Connection*> connections;

  /// All there are, kept alive so that they can be told something.
  [[nodiscard]] std::vector<std::shared_ptr<Connection>> aliveConnections() {
    std::vector<std::shared_ptr<Connection>> alive;
    std::lock_guard lock(mutex);
    for (auto* connection : connections) {
      if (auto owned = connection->weak_from_this().lock()) alive.push_back(std::move(owned));
    }
    return alive;
  }

  [[nodiscard]] bool hasRoom() {
    std::lock_guard lock(mutex);
    return connections.size() < configuration.connectionLimit;
  }
};

inline Connection::Connection(std::shared_ptr<HTTPServerState> state) : state_(std::move(state)) {
  std::lock_guard lock(state_->mutex);
  state_->connections.insert(this);
}

inline Connection::~Connection() {
  std::lock_guard lock(state_->mutex);
  state_->connections.erase(this);
}

}  // namespace vek::services
