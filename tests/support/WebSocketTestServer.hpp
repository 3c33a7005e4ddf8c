// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/TestAuthority.hpp"
#include "support/WebSocketFrame.hpp"

namespace vek::test {

/// The server's end of one connection, which a script moves on step by step. A step that finds the
/// client gone, or the server at its end, ends the script. Without a step that ends it, a
/// connection is served well until the client ends it.
class WebSocketPeer {
 public:
  virtual ~WebSocketPeer() = default;

  /// Reads a request to a proxy and grants it; what follows comes through the tunnel.
  virtual void tunnel() = 0;
  /// Reads the upgrade request, after the TLS handshake where there is one. Steps that need it done
  /// do it themselves.
  virtual void readRequest() = 0;
  /// Answers the request with something other than an upgrade.
  virtual void answer(int status, std::string_view headers = "", std::string_view body = "") = 0;
  /// Accepts the request; `headers` are lines that end in "\r\n".
  virtual void upgrade(std::string_view headers = "") = 0;

  virtual void bytes(std::string_view raw) = 0;
  void frame(WebSocketFrame const& frame) { bytes(frame.bytes()); }
  void text(std::string_view text) { frame({.payload = std::string(text)}); }
  void binary(std::string_view data) { frame({WebSocketFrame::binary, std::string(data)}); }
  void ping(std::string_view data) { frame({WebSocketFrame::ping, std::string(data)}); }
  /// One text message in several frames.
  void fragments(std::initializer_list<std::string_view> parts);
  /// A close frame; the connection then goes on until the client ends it.
  void close(int code, std::string_view reason = "");
  void closeWithoutCode() { frame({WebSocketFrame::close}); }

  /// These read, and answer pings and close frames, until...
  /// ...so many messages have come in all,
  virtual void waitForMessages(std::size_t count) = 0;
  /// ...a text message that contains `part` has come,
  virtual void waitForText(std::string_view part) = 0;
  /// ...the client has sent a pong,
  virtual void waitForPong() = 0;
  /// ...the client's close frame has come,
  virtual void waitForClose() = 0;
  /// ...the client has ended the connection.
  virtual void serve() = 0;
  /// Reads so many bytes more.
  virtual void waitForBytes(std::size_t count) = 0;
  /// Reads nothing until the test calls `release` on the server.
  virtual void waitForRelease() = 0;

  /// Ends the sending side as a process that exits does, and awaits the client's end.
  virtual void finish() = 0;
  /// Ends the connection at once, by a reset.
  virtual void reset() = 0;
  /// Reads nothing until the client ends the connection.
  virtual void hang() = 0;
};

using WebSocketScript = std::function<void(WebSocketPeer&)>;

/// What the server knows of a connection.
struct WebSocketConnection {
  struct Message {
    bool isText;
    std::string bytes;
  };

  std::chrono::steady_clock::time_point acceptedAt = {};
  /// The request for a tunnel, as those below.
  std::string tunnelLine = {};
  std::string tunnelHeaders = {};
  /// Such as "GET /path?query"; empty before it has come.
  std::string line = {};
  /// The lines of the request between, each ended by "\r\n".
  std::string headers = {};
  std::vector<Message> messages = {};
  std::size_t messageCount = 0;
  std::size_t binaryBytes = 0;
  /// Payloads of the pongs.
  std::vector<std::string> pongs = {};
  bool closeFrameCame = false;
  /// Of the close frame, where it had one.
  std::optional<int> closeCode = {};
  std::string closeReason = {};
  bool isOpen = true;

  /// The value of the first header of the upgrade request of exactly that name; empty when there is
  /// none.
  [[nodiscard]] std::string header(std::string_view name) const;
};

/// A WebSocket server on loopback that does what a test writes down, right or wrong. A thread a
/// connection.
class WebSocketTestServer {
 public:
  struct Options {
    /// Speaks TLS with it; plain TCP without.
    std::optional<TestAuthority::Identity> identity = {};
    /// Off for streams of gigabytes, whose messages are then only counted.
    bool keepsBinaryMessages = true;
    /// Gets each binary message, on a thread of its connection.
    std::function<void(std::string_view)> onBinary = {};
  };

  /// The first connection gets the first script and so on; those beyond the last get the last.
  explicit WebSocketTestServer(std::vector<WebSocketScript> scripts)
      : WebSocketTestServer(std::move(scripts), Options()) {}
  WebSocketTestServer(std::vector<WebSocketScript> scripts, Options options);
  WebSocketTestServer(WebSocketTestServer const&) = delete;
  WebSocketTestServer& operator=(WebSocketTestServer const&) = delete;
  ~WebSocketTestServer();

  /// Such as "wss://localhost:38947".
  [[nodiscard]] std::string url() const;
  [[nodiscard]] int port() const;

  /// All connections so far, in the order in which they were accepted.
  [[nodiscard]] std::vector<WebSocketConnection> connections() const;
  [[nodiscard]] int openConnections() const;

  using Condition = std::function<bool(std::vector<WebSocketConnection> const&)>;
  /// Whether `condition` comes true within `limit`.
  [[nodiscard]] bool waitUntil(Condition const& condition,
                               std::chrono::milliseconds limit = std::chrono::seconds(20)) const;
  /// Whether all connections end, and there were `count` of them where it is given.
  [[nodiscard]] bool waitForEnd(std::optional<std::size_t> count = {}) const;

  /// Lets one script go on that waits for it, now or later.
  void release();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vek::test
