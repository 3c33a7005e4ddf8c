// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vek {

/// Base64 with the alphabet that is safe in URLs, without padding.
struct Base64URL {
  [[nodiscard]] static std::string encode(std::string_view bytes);

  /// Nothing for a text that `encode` gives for no bytes: one with padding, of the other alphabet,
  /// or with bits left over.
  [[nodiscard]] static std::optional<std::string> decode(std::string_view text);
};

}  // namespace vek
