// SPDX-License-Identifier: MIT
#include "platform/SpeechVocabulary.hpp"

#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>

namespace vek {
namespace {

constexpr std::string_view wordMark = "\u2581";
constexpr std::int64_t firstPieceOfText = 3;  // before it stand "unknown", "start" and "end"

/// The byte that a piece like "<0x0A>" stands for.
std::optional<char> byteOf(std::string_view piece) {
  if (piece.size() != 6 || !piece.starts_with("<0x") || !piece.ends_with('>')) return {};
  unsigned value = 0;
  std::from_chars(piece.data() + 3, piece.data() + 5, value, 16);
  return static_cast<char>(value);
}

void append(std::string& text, std::string_view piece) {
  if (auto const byte = byteOf(piece)) {
    text += *byte;
    return;
  }
  for (std::size_t mark; (mark = piece.find(wordMark)) != std::string_view::npos;) {
    text.append(piece.substr(0, mark)).append(1, ' ');
    piece.remove_prefix(mark + wordMark.size());
  }
  text.append(piece);
}

std::string trimmed(std::string_view text) {
  constexpr std::string_view space = " \t\r\n";
  std::size_t const first = text.find_first_not_of(space);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(space) - first + 1));
}

}  // namespace

SpeechVocabulary::SpeechVocabulary(std::filesystem::path const& file) {
  std::ifstream input(file, std::ios::binary);
  content_.assign(std::istreambuf_iterator<char>(input), {});
  if (content_.empty()) throw std::runtime_error("There is no vocabulary in " + file.string());
  std::string_view rest = content_;
  for (std::size_t end; (end = rest.find('\n')) != std::string_view::npos;) {
    pieces_.push_back(rest.substr(0, end));
    rest.remove_prefix(end + 1);
  }
  pieces_.push_back(rest);
}

std::string SpeechVocabulary::text(std::span<std::int64_t const> tokens) const {
  std::string text;
  for (std::int64_t const token : tokens) {
    if (token < firstPieceOfText || static_cast<std::size_t>(token) >= pieces_.size()) continue;
    append(text, pieces_[static_cast<std::size_t>(token)]);
  }
  return trimmed(text);
}

}  // namespace vek
