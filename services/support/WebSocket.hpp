// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace vek::services {

/// A connection that a client has upgraded to a WebSocket. Any thread may call; nothing waits or
/// throws, and what is asked of a connection that has ended is dropped. Pings are answered.
class WebSocket {
 public:
  struct Message {
    enum class Kind : std::uint8_t { text, binary };
    Kind kind;
    std::string bytes;
  };
  enum class CloseCode : std::uint16_t {
    normalClosure = 1000,
    goingAway = 1001,
    internalError = 1011,
  };
  using Receiver = std::function<void(Message)>;

  WebSocket() = default;
  WebSocket(WebSocket const&) = delete;
  WebSocket& operator=(WebSocket const&) = delete;
  virtual ~WebSocket() = default;

  /// Hands the next message to `receiver`, on a server thread. One is asked for at a time; a client
  /// that sends more has to wait. When the connection ends instead, `receiver` is let go of without
  /// a call.
  virtual void receive(Receiver receiver) = 0;
  /// Sends a text message after those before it.
  virtual void send(std::string text) = 0;
  /// Ends the connection after what was sent before. A second call changes nothing.
  virtual void close(CloseCode code, std::string reason) = 0;
};

}  // namespace vek::services
