// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "services/support/HTTPMessage.hpp"

namespace vek::services {

/// The port is taken by another program.
struct PortInUse : std::runtime_error {
  explicit PortInUse(std::uint16_t port);
};

struct HTTPServerConfiguration {
  /// 0 takes any free port.
  std::uint16_t port = 0;
  /// PEM files of the server's certificate chain and its key.
  std::filesystem::path certificate;
  std::filesystem::path key;

  std::size_t bodyLimit = std::size_t{16} << 20;
  std::size_t connectionLimit = 256;
  /// How long a client may take for the TLS handshake and for one request, and to take the answer.
  std::chrono::seconds requestTimeout{30};
  /// How long a connection may rest between two requests.
  std::chrono::seconds idleTimeout{120};

  /// The longest message of a WebSocket, and how long the wait for one may take: then the
  /// connection is closed with 1011.
  std::size_t messageLimit = std::size_t{1} << 20;
  std::chrono::milliseconds messageTimeout{60'000};
};

struct HTTPServerState;

/// An HTTPS server on the loopback addresses 127.0.0.1 and ::1, with two threads of its own.
class HTTPServer {
 public:
  /// Has the port when it returns; connections wait until `serve`. Throws `PortInUse`, or another
  /// exception with the cause.
  explicit HTTPServer(HTTPServerConfiguration configuration);
  /// Stops.
  ~HTTPServer();

  [[nodiscard]] std::uint16_t port() const;

  /// Begins to answer requests. Called once.
  void serve(Handler handler);

  /// Takes no more requests, gives clients up to three seconds to take their answers, and returns
  /// when all threads have ended. Waits for each handler that has not replied yet.
  void stop();

 private:
  class Impl;
  std::shared_ptr<Impl> impl_;
};

}  // namespace vek::services
