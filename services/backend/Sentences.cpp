// SPDX-License-Identifier: MIT
#include "services/backend/Sentences.hpp"

#include <algorithm>
#include <array>

namespace vek::services {

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view enders = ".!?";
constexpr std::string_view opening = "\"'([{-";
constexpr std::string_view closing = "\"')]}.,;:!?-";
constexpr std::string_view typographicApostrophe = "\xE2\x80\x99";

constexpr std::array<std::string_view, 12> abbreviations = {
    "mr", "mrs", "ms", "dr", "prof", "st", "e.g", "i.e", "vs", "approx", "no", "inc"};

char lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowered(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == typographicApostrophe[0] && text.substr(i).starts_with(typographicApostrophe)) {
      result += '\'';
      i += typographicApostrophe.size() - 1;
    } else {
      result += lowered(text[i]);
    }
  }
  return result;
}

std::string_view trimmed(std::string_view text) {
  auto const first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool endsWithAbbreviation(std::string_view text) {
  auto const blank = text.find_last_of(blanks);
  auto const word = lowered(text.substr(blank == std::string_view::npos ? 0 : blank + 1));
  return std::find(abbreviations.begin(), abbreviations.end(), word) != abbreviations.end();
}

/// Whether the character at `i` ends the sentence that began at `start`.
bool isEnd(std::string_view text, std::size_t start, std::size_t i) {
  if (text[i] == '\n') return true;
  if (enders.find(text[i]) == std::string_view::npos) return false;
  bool const isFollowedByBlank =
      i + 1 == text.size() || blanks.find(text[i + 1]) != std::string_view::npos;
  if (!isFollowedByBlank) return false;
  return text[i] != '.' || !endsWithAbbreviation(text.substr(start, i - start));
}

}  // namespace

std::vector<std::string_view> sentences(std::string_view text) {
  std::vector<std::string_view> result;
  std::size_t start = 0;
  for (std::size_t i = 0; i <= text.size(); ++i) {
    if (i < text.size() && !isEnd(text, start, i)) continue;
    auto const sentence = trimmed(text.substr(start, i + 1 - start));
    if (!sentence.empty()) result.push_back(sentence);
    start = i + 1;
  }
  return result;
}

std::vector<Word> words(std::string_view sentence) {
  std::vector<Word> result;
  for (std::size_t at = 0; at < sentence.size();) {
    auto const first = sentence.find_first_not_of(blanks, at);
    if (first == std::string_view::npos) break;
    auto const end = std::min(sentence.find_first_of(blanks, first), sentence.size());
    at = end;
    auto token = sentence.substr(first, end - first);
    while (!token.empty() && opening.find(token.front()) != std::string_view::npos) {
      token.remove_prefix(1);
    }
    auto const whole = token;
    while (!token.empty() && closing.find(token.back()) != std::string_view::npos) {
      token.remove_suffix(1);
    }
    if (token.empty()) continue;
    result.push_back({token, lowered(token), token.size() < whole.size()});
  }
  return result;
}

}  // namespace vek::services
