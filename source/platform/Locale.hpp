// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vek {

/// A language and the customs of a place, named as in "en-US".
class Locale {
 public:
  explicit Locale(std::string identifier) : identifier_(std::move(identifier)) {}

  /// The one that the user works in.
  [[nodiscard]] static Locale current();

  [[nodiscard]] std::string const& identifier() const { return identifier_; }

  /// "en" of "en-US"; nothing if the identifier names no language.
  [[nodiscard]] std::optional<std::string> languageCode() const;

  /// The name, in this locale's language, of the language with this code; nothing if it is
  /// unknown.
  [[nodiscard]] std::optional<std::string> localizedLanguageName(std::string_view code) const;

  bool operator==(Locale const&) const = default;

 private:
  std::string identifier_;
};

}  // namespace vek
