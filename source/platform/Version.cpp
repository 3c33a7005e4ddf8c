// SPDX-License-Identifier: MIT
#include "platform/Version.hpp"

#include <algorithm>

#include "platform/Number.hpp"

namespace vek {
namespace {

constexpr std::size_t longestText = 64;

std::vector<std::string_view> split(std::string_view text) {
  std::vector<std::string_view> parts;
  for (auto dot = text.find('.'); dot != text.npos; dot = text.find('.')) {
    parts.push_back(text.substr(0, dot));
    text.remove_prefix(dot + 1);
  }
  parts.push_back(text);
  return parts;
}

bool isWord(std::string_view text) {
  auto const isWordCharacter = [](char c) {
    return c == '-' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  };
  return !text.empty() && std::ranges::all_of(text, isWordCharacter);
}

/// Numbers come before other words and stand in the order of their values.
std::strong_ordering compareWords(std::string const& one, std::string const& other) {
  auto const first = number<std::uint32_t>(one);
  auto const second = number<std::uint32_t>(other);
  if (first && second) return *first <=> *second;
  if (first || second) return first ? std::strong_ordering::less : std::strong_ordering::greater;
  return one <=> other;
}

}  // namespace

std::optional<Version> Version::parse(std::string_view text) {
  if (text.size() > longestText) return std::nullopt;
  Version version;
  version.text_ = text;
  auto const hyphen = text.find('-');
  for (auto const part : split(text.substr(0, hyphen))) {
    auto const value = number<std::uint32_t>(part);
    if (!value) return std::nullopt;
    version.numbers_.push_back(*value);
  }
  while (!version.numbers_.empty() && version.numbers_.back() == 0) version.numbers_.pop_back();
  if (hyphen == text.npos) return version;
  for (auto const part : split(text.substr(hyphen + 1))) {
    if (!isWord(part)) return std::nullopt;
    version.preRelease_.emplace_back(part);
  }
  return version;
}

std::strong_ordering Version::operator<=>(Version const& other) const {
  if (auto const order = numbers_ <=> other.numbers_; order != 0) return order;
  if (preRelease_.empty() || other.preRelease_.empty()) {
    return preRelease_.empty() <=> other.preRelease_.empty();
  }
  return std::lexicographical_compare_three_way(preRelease_.begin(), preRelease_.end(),
                                                other.preRelease_.begin(), other.preRelease_.end(),
                                                compareWords);
}

}  // namespace vek
