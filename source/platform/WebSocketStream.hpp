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
#include <vector>

#include "platform/HTTPClient.hpp"
#include "platform/ProxySettings.hpp"
#include "platform/URLComponents.hpp"
#include "platform/URLSessionWebSocketTask.hpp"
#include "runtime/Result.hpp"
#include "runtime/UniqueFunction.hpp"

namespace boost::asio {
class io_context;
}

namespace vek {

/// One WebSocket connection as the wire sees it, from the look-up of the name to the last byte.
/// Belongs to the thread of its loop. Completions come once, never within the call that they belong
/// to, with errors that are WebSocketErrors.
class WebSocketStream {
 public:
  struct Options {
    /// Of a scheme "ws" or "wss".
    URLComponents url;
    std::vector<HTTPHeader> headers;
    std::optional<Proxy> proxy;
    std::filesystem::path trustedAuthority;
    std::size_t largestMessage;
  };
  using Opened = UniqueFunction<void(Result<std::optional<std::string>>)>;
  using Received = UniqueFunction<void(Result<WebSocketMessage>)>;
  using Sent = UniqueFunction<void(std::exception_ptr)>;

  static std::shared_ptr<WebSocketStream> make(boost::asio::io_context& loop, Options options);

  WebSocketStream() = default;
  WebSocketStream(WebSocketStream const&) = delete;
  WebSocketStream& operator=(WebSocketStream const&) = delete;
  virtual ~WebSocketStream() = default;

  /// Connects, by TLS where the scheme says so, and asks for the upgrade. Gives the protocol that
  /// the server chose.
  virtual void open(Opened done) = 0;
  /// Waits for one message. One at a time. Pings and close frames are answered while it waits.
  virtual void read(Received done) = 0;
  /// Sends one message. One at a time.
  virtual void write(WebSocketMessage message, Sent done) = 0;
  /// Sends a close frame after the message under way, and waits for the other side's.
  virtual void close(std::uint16_t code, std::string const& reason,
                     UniqueFunction<void()> done) = 0;
  /// Ends the connection at once, and all that is under way with an error.
  virtual void abort() = 0;

  /// When the system last took bytes of a message.
  [[nodiscard]] virtual std::chrono::steady_clock::time_point lastProgress() const = 0;
  /// True when the other machine has not confirmed for long what was sent to it.
  [[nodiscard]] virtual bool isUnheard() = 0;
};

}  // namespace vek
