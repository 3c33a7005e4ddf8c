// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vek {

/// The 128-bit identifier.
class UUID {
 public:
  UUID() = default;

  /// Reads the canonical 36-character text, in either case.
  static std::optional<UUID> parse(std::string_view text);
  /// A random one (version 4).
  static UUID random();

  [[nodiscard]] std::string upperCaseText() const;
  [[nodiscard]] std::string lowerCaseText() const;

  auto operator<=>(UUID const&) const = default;
  [[nodiscard]] std::size_t hash() const;

 private:
  std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace vek

template <>
struct std::hash<vek::UUID> {
  std::size_t operator()(vek::UUID const& id) const noexcept { return id.hash(); }
};
