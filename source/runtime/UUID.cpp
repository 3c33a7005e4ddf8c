// SPDX-License-Identifier: MIT
#include "runtime/UUID.hpp"

#include <cstring>
#include <random>

namespace vek {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isHyphen(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

std::optional<std::uint8_t> hexValue(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<std::uint8_t>(digit - '0');
  if (digit >= 'a' && digit <= 'f') return static_cast<std::uint8_t>(digit - 'a' + 10);
  if (digit >= 'A' && digit <= 'F') return static_cast<std::uint8_t>(digit - 'A' + 10);
  return std::nullopt;
}

std::string write(std::array<std::uint8_t, 16> const& bytes, std::string_view digits) {
  std::string text;
  text.reserve(textLength);
  for (auto const byte : bytes) {
    if (isHyphen(text.size())) text.push_back('-');
    text.push_back(digits[byte >> 4U]);
    text.push_back(digits[byte & 0xFU]);
  }
  return text;
}

}  // namespace

std::optional<UUID> UUID::parse(std::string_view text) {
  if (text.size() != textLength) return std::nullopt;
  UUID id;
  std::size_t digit = 0;
  for (std::size_t i = 0; i < textLength; ++i) {
    if (isHyphen(i)) {
      if (text[i] != '-') return std::nullopt;
      continue;
    }
    auto const value = hexValue(text[i]);
    if (!value) return std::nullopt;
    auto& byte = id.bytes_.at(digit / 2);
    byte = static_cast<std::uint8_t>((byte << 4U) | *value);
    ++digit;
  }
  return id;
}

UUID UUID::random() {
  thread_local std::mt19937_64 generator{[] {
    std::random_device device;
    std::seed_seq seed{device(), device(), device(), device()};
    return std::mt19937_64(seed);
  }()};
  std::array<std::uint64_t, 2> const words{generator(), generator()};
  UUID id;
  std::memcpy(id.bytes_.data(), words.data(), id.bytes_.size());
  id.bytes_[6] = static_cast<std::uint8_t>((id.bytes_[6] & 0x0FU) | 0x40U);
  id.bytes_[8] = static_cast<std::uint8_t>((id.bytes_[8] & 0x3FU) | 0x80U);
  return id;
}

std::string UUID::upperCaseText() const {
  return write(bytes_, "0123456789ABCDEF");
}
std::string UUID::lowerCaseText() const {
  return write(bytes_, "0123456789abcdef");
}

std::size_t UUID::hash() const {
  std::array<std::uint64_t, 2> words{};
  std::memcpy(words.data(), bytes_.data(), bytes_.size());
  return words[0] ^ (words[1] * 0x9E3779B97F4A7C15U);
}

}  // namespace vek
