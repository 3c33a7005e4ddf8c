// SPDX-License-Identifier: MIT
#include "support/WebSocketFrame.hpp"

#include <cstddef>

namespace vek::test {
namespace {

void appendBigEndian(std::string& bytes, std::uint64_t value, int count) {
  while (count-- > 0) bytes += static_cast<char>(value >> (8U * static_cast<unsigned>(count)));
}

std::uint64_t bigEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (char const byte : bytes) value = value << 8U | static_cast<unsigned char>(byte);
  return value;
}

}  // namespace

std::string WebSocketFrame::bytes() const {
  std::string bytes;
  bytes += static_cast<char>((isFinal ? 0x80U : 0U) | unsigned{reservedBits} << 4U | opcode);
  if (payload.size() < 126) {
    bytes += static_cast<char>(payload.size());
  } else if (payload.size() < 65536) {
    bytes += '\x7e';
    appendBigEndian(bytes, payload.size(), 2);
  } else {
    bytes += '\x7f';
    appendBigEndian(bytes, payload.size(), 8);
  }
  return bytes + payload;
}

std::optional<WebSocketFrame> WebSocketFrame::take(std::string& buffer) {
  if (buffer.size() < 2) return std::nullopt;
  auto const first = static_cast<unsigned char>(buffer[0]);
  auto const second = static_cast<unsigned char>(buffer[1]);
  std::size_t const lengthSize = (second & 0x7fU) == 126 ? 2 : (second & 0x7fU) == 127 ? 8 : 0;
  std::size_t const maskSize = (second & 0x80U) != 0 ? 4 : 0;
  std::size_t const headSize = 2 + lengthSize + maskSize;
  if (buffer.size() < headSize) return std::nullopt;
  std::string_view const view = buffer;
  std::size_t const length =
      lengthSize == 0 ? second & 0x7fU : bigEndian(view.substr(2, lengthSize));
  if (buffer.size() - headSize < length) return std::nullopt;

  WebSocketFrame frame{.opcode = static_cast<std::uint8_t>(first & 0x0fU),
                       .payload = buffer.substr(headSize, length),
                       .isFinal = (first & 0x80U) != 0,
                       .reservedBits = static_cast<std::uint8_t>((first >> 4U) & 0x07U)};
  if (maskSize > 0) {
    std::string const mask = buffer.substr(2 + lengthSize, maskSize);
    for (std::size_t i = 0; i < length; ++i) {
      frame.payload[i] = static_cast<char>(frame.payload[i] ^ mask[i % maskSize]);
    }
  }
  buffer.erase(0, headSize + length);
  return frame;
}

std::string closePayload(int code, std::string_view reason) {
  std::string payload;
  appendBigEndian(payload, static_cast<std::uint64_t>(code), 2);
  return payload.append(reason);
}

}  // namespace vek::test
