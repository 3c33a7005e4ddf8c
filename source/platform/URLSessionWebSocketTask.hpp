// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/HTTPClient.hpp"
#include "runtime/Result.hpp"
#include "runtime/UniqueFunction.hpp"

namespace vek {

/// Why a socket sends or reads no more.
class WebSocketError final : public std::exception {
 public:
  /// Those that callers tell apart have the platform's number.
  enum class Code : int {
    /// The connection was open, and the other side or the network has ended it.
    notConnected = 57,
    /// This side cancelled the socket.
    cancelled = -999,
    timedOut = -1001,
    cannotFindHost = -1003,
    cannotConnect = -1004,
    /// The server answered the upgrade with something else.
    badServerResponse = -1011,
    untrustedServer = -1202,
    messageTooLong = 40,
    /// The other side broke the protocol.
    protocolError = 100,
    other = -1,
  };

  /// `detail` is what the transport knows beyond the code; it may be empty.
  WebSocketError(Code code, std::string const& detail);

  [[nodiscard]] Code code() const { return code_; }
  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  Code code_;
  std::string description_;
};

struct WebSocketMessage {
  enum class Kind : std::uint8_t { text, binary };

  Kind kind = Kind::text;
  std::string bytes = {};
};

class URLSessionWebSocketTask;

/// Hears what happens to a socket, on a thread of the session's.
class URLSessionWebSocketDelegate {
 public:
  URLSessionWebSocketDelegate() = default;
  URLSessionWebSocketDelegate(URLSessionWebSocketDelegate const&) = delete;
  URLSessionWebSocketDelegate& operator=(URLSessionWebSocketDelegate const&) = delete;
  virtual ~URLSessionWebSocketDelegate() = default;

  /// The handshake has ended well; `protocol` is the one that the server chose, if any.
  virtual void webSocketTaskDidOpen(URLSessionWebSocketTask& task,
                                    std::optional<std::string> protocol) = 0;
};

/// One WebSocket connection, over TLS for "wss" and plain for "ws". Operations come from any thread
/// and return at once; completions come on one thread of the session's, in order, each exactly
/// once, also when the socket fails or is cancelled or its last owner lets go of it.
class URLSessionWebSocketTask {
 public:
  using SendCompletion = UniqueFunction<void(std::exception_ptr)>;
  using ReceiveCompletion = UniqueFunction<void(Result<WebSocketMessage>)>;

  enum class CloseCode : std::uint16_t { normalClosure = 1000, goingAway = 1001 };

  URLSessionWebSocketTask() = default;
  URLSessionWebSocketTask(URLSessionWebSocketTask const&) = delete;
  URLSessionWebSocketTask& operator=(URLSessionWebSocketTask const&) = delete;
  virtual ~URLSessionWebSocketTask() = default;

  virtual void setDelegate(std::weak_ptr<URLSessionWebSocketDelegate> delegate) = 0;
  /// Begins to connect. Until then nothing is sent or read.
  virtual void resume() = 0;
  /// Queues a message. Done when its bytes have been handed to the system; errors are
  /// WebSocketError.
  virtual void send(WebSocketMessage message, SendCompletion done) = 0;
  /// Takes the next message, now or when it comes; errors are WebSocketError.
  virtual void receive(ReceiveCompletion done) = 0;
  /// Sends a close frame after what is being sent and ends the connection. Reads and sends that are
  /// still due end with `cancelled`.
  virtual void cancel(CloseCode code, std::optional<std::string> reason) = 0;
};

/// Makes sockets of one kind.
class URLSession {
 public:
  struct Configuration {
    /// PEM file of an authority that is trusted beside the system's; empty for none.
    std::filesystem::path trustedAuthority = {};
    std::size_t largestMessage = std::size_t{16} << 20U;

    /// That of this process's deployment.
    static Configuration defaultSessionConfiguration();
  };

  URLSession() = default;
  URLSession(URLSession const&) = delete;
  URLSession& operator=(URLSession const&) = delete;
  virtual ~URLSession() = default;

  static std::shared_ptr<URLSession> make(Configuration configuration,
                                          std::weak_ptr<URLSessionWebSocketDelegate> delegate);

  /// `request` gives URL, headers and the time within which the socket has to be open. The socket
  /// outlives the session where its owner keeps it.
  virtual std::shared_ptr<URLSessionWebSocketTask> webSocketTask(HTTPRequest request) = 0;
};

}  // namespace vek
