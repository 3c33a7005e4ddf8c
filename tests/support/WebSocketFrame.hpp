// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vek::test {

/// A WebSocket frame as it goes over the wire, well-formed or not.
struct WebSocketFrame {
  enum Opcode : std::uint8_t {
    continuation = 0x0,
    text = 0x1,
    binary = 0x2,
    close = 0x8,
    ping = 0x9,
    pong = 0xa
  };

  std::uint8_t opcode = text;
  std::string payload = {};
  bool isFinal = true;
  std::uint8_t reservedBits = 0;

  /// The bytes as a server sends them, unmasked.
  [[nodiscard]] std::string bytes() const;
  /// Takes the first whole frame, masked or not, off `buffer`; nothing while it is not all there.
  static std::optional<WebSocketFrame> take(std::string& buffer);
};

/// The payload of a close frame.
[[nodiscard]] std::string closePayload(int code, std::string_view reason);

}  // namespace vek::test
