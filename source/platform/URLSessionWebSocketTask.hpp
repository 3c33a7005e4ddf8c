// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/HTTPClient.hpp"
#include "platform/WebSocketError.hpp"
#include "runtime/Result.hpp"
#include "runtime/UniqueFunction.hpp"

namespace vek {

struct WebSocketMessage {
  enum class Kind : std::uint8_t { text, binary };

  Kind kind = Kind::text;
  std::string bytes = {};
};

class URLSessionWebSocketTask;

/// Hears what happens to a socket, on the thread of its completions.
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

/// One WebSocket connection, over TLS for "wss" and plain for "ws", through the proxy that the
/// environment names. Operations come from any thread and return at once; completions come on one
/// thread that all sockets share, in order, each exactly once, also when the socket fails or is
/// cancelled or its last owner lets go of it. They must not block.
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
  /// Begins to connect, as soon as the last connection to the same host is a moment ago: longer
  /// while they keep failing. Until then nothing is sent or read.
  virtual void resume() = 0;
  /// Queues a message. Done when its bytes have been handed to the system; errors are
  /// WebSocketError.
  virtual void send(WebSocketMessage message, SendCompletion done) = 0;
  /// Takes the next message, now or when it comes; errors are WebSocketError.
  virtual void receive(ReceiveCompletion done) = 0;
  /// Sends a close frame after what is being sent and ends the connection. Reads and sends that are
  /// still due end with `cancelled`. Letting go of the socket does the same. A reason is cut to the
  /// 123 bytes that there is room for.
  virtual void cancel(CloseCode code, std::optional<std::string> reason) = 0;
};

/// Makes sockets of one kind.
class URLSession {
 public:
  struct Configuration {
    /// PEM file of an authority that is trusted beside the system's; empty for none.
    std::filesystem::path trustedAuthority = {};
    std::size_t largestMessage = std::size_t{16} << 20U;
    /// A message of which no more bytes are taken for so long ends the connection with `timedOut`.
    std::chrono::milliseconds sendTimeout = std::chrono::seconds(60);
    /// For the message under way and the other side's close frame, once the socket is cancelled.
    std::chrono::milliseconds closeTimeout = std::chrono::seconds(5);

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
