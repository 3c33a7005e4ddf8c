// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vek {

/// The pieces of text that a speech model writes with, by their number.
class SpeechVocabulary {
 public:
  /// Reads a file of pieces that are separated by line feeds; a piece may hold any other byte.
  /// Throws std::runtime_error.
  explicit SpeechVocabulary(std::filesystem::path const& file);

  [[nodiscard]] std::size_t size() const { return pieces_.size(); }

  /// The text of these pieces, without space at its ends.
  [[nodiscard]] std::string text(std::span<std::int64_t const> tokens) const;

 private:
  std::string content_;
  std::vector<std::string_view> pieces_;
};

}  // namespace vek
