// SPDX-License-Identifier: MIT
#include "records/Base64URL.hpp"

#include <array>
#include <cstdint>

namespace vek {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
constexpr std::uint8_t none = 0xff;

constexpr auto values = [] {
  std::array<std::uint8_t, 256> table{};
  table.fill(none);
  for (std::size_t i = 0; i < alphabet.size(); ++i) {
    table.at(static_cast<unsigned char>(alphabet[i])) = static_cast<std::uint8_t>(i);
  }
  return table;
}();

}  // namespace

std::string Base64URL::encode(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() * 4 + 2) / 3);
  std::uint32_t bits = 0;
  unsigned count = 0;
  for (char const byte : bytes) {
    bits = bits << 8U | static_cast<unsigned char>(byte);
    for (count += 8; count >= 6; count -= 6) text += alphabet[bits >> (count - 6) & 0x3fU];
  }
  if (count > 0) text += alphabet[bits << (6 - count) & 0x3fU];
  return text;
}

std::optional<std::string> Base64URL::decode(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() * 3 / 4);
  std::uint32_t bits = 0;
  unsigned count = 0;
  for (char const character : text) {
    auto const value = values[static_cast<unsigned char>(character)];
    if (value == none) return std::nullopt;
    bits = bits << 6U | value;
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes += static_cast<char>(bits >> count & 0xffU);
    }
  }
  bool const hasRest = count == 6 || (bits & ((1U << count) - 1)) != 0;
  if (hasRest) return std::nullopt;
  return bytes;
}

}  // namespace vek
