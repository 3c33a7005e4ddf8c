// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vek {

/// A version of the program, such as "1.10.2" or "2.0-beta.3", ordered as its makers mean it:
/// numbers by value, missing ones as 0, and what leads up to a release before the release.
class Version {
 public:
  /// Nothing for a text that is no version.
  [[nodiscard]] static std::optional<Version> parse(std::string_view text);

  /// As it was written.
  [[nodiscard]] std::string const& text() const { return text_; }

  std::strong_ordering operator<=>(Version const& other) const;
  bool operator==(Version const& other) const { return (*this <=> other) == 0; }

 private:
  std::string text_;
  /// Without zeros at the end.
  std::vector<std::uint32_t> numbers_;
  /// The words behind the hyphen; empty for a release.
  std::vector<std::string> preRelease_;
};

}  // namespace vek
