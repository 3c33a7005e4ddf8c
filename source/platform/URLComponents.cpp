// SPDX-License-Identifier: MIT
#include "platform/URLComponents.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace vek {
namespace {

constexpr bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool isPrintable(char c) {
  return c > ' ' && c < 0x7f;
}

/// Cuts `text` before the first of `characters` and gives what was cut off.
std::string_view cut(std::string_view& text, std::string_view characters) {
  auto const at = std::min(text.find_first_of(characters), text.size());
  std::string_view const rest = text.substr(at);
  text = text.substr(0, at);
  return rest;
}

}  // namespace

URLComponents::URLComponents(std::string_view text) {
  std::string_view const fragment = cut(text, "#");
  std::string_view const query = cut(text, "?");
  fragment_ = fragment;
  if (!query.empty()) query_ = query.substr(1);

  if (auto const end = text.find("://"); end != std::string_view::npos) {
    scheme_ = text.substr(0, end);
    text.remove_prefix(end + 3);
    path_ = cut(text, "/");
    authority_ = text;
  } else {
    path_ = text;
  }
}

void URLComponents::setQueryItems(std::vector<URLQueryItem> const& items) {
  query_.emplace();
  for (auto const& [name, value] : items) {
    if (!query_->empty()) *query_ += '&';
    *query_ += percentEncoded(name) + "=" + percentEncoded(value);
  }
}

std::string URLComponents::text() const {
  std::string text = scheme_.empty() ? "" : scheme_ + "://";
  text += authority_ + path_;
  if (query_) text += "?" + *query_;
  return text + fragment_;
}

std::optional<std::string> URLComponents::url() const {
  std::string whole = text();
  bool const isScheme =
      !scheme_.empty() && isLetter(scheme_[0]) && std::ranges::all_of(scheme_, [](char c) {
        return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
      });
  if (!isScheme || authority_.empty() || authority_[0] == ':') return std::nullopt;
  if (!std::ranges::all_of(whole, isPrintable)) return std::nullopt;
  if (whole.find_first_of("\"<>\\^`{|}") != std::string::npos) return std::nullopt;
  return whole;
}

std::string percentEncoded(std::string_view text) {
  constexpr std::string_view plain = "-._~!$'()*,/:;@";
  std::string encoded;
  for (char const c : text) {
    if (isLetter(c) || isDigit(c) || plain.find(c) != std::string_view::npos) {
      encoded += c;
    } else {
      encoded += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
  }
  return encoded;
}

}  // namespace vek
