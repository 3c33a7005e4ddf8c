// SPDX-License-Identifier: MIT
#include "platform/URLComponents.hpp"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "platform/Number.hpp"

namespace vek {
namespace {

constexpr bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
/// The value of a digit, or -1.
constexpr int hexadecimal(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
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

std::string URLComponents::userInfo() const {
  auto const at = authority_.rfind('@');
  return at == std::string::npos ? "" : authority_.substr(0, at);
}

std::string_view URLComponents::hostAndPort() const {
  return std::string_view(authority_).substr(authority_.rfind('@') + 1);
}

std::string URLComponents::host() const {
  std::string_view const place = hostAndPort();
  auto const end = place.find(':', place.starts_with('[') ? place.find(']') : 0);
  return std::string(place.substr(0, end));
}

std::string URLComponents::address() const {
  std::string host = this->host();
  bool const isInBrackets = host.starts_with('[') && host.ends_with(']');
  return isInBrackets ? host.substr(1, host.size() - 2) : host;
}

std::string_view URLComponents::portText() const {
  return hostAndPort().substr(std::min(host().size() + 1, hostAndPort().size()));
}

std::optional<std::uint16_t> URLComponents::port() const {
  return number<std::uint16_t>(portText());
}

std::string URLComponents::target() const {
  std::string const path = path_.empty() ? "/" : path_;
  return query_ ? path + "?" + *query_ : path;
}

std::string_view URLComponents::fragment() const {
  return std::string_view(fragment_).substr(fragment_.empty() ? 0 : 1);
}

std::optional<std::vector<URLQueryItem>> URLComponents::queryItems() const {
  return vek::queryItems(query_.value_or(""));
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
  if (!isScheme || host().empty() || (!portText().empty() && !port())) return std::nullopt;
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

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded += text[i];
      continue;
    }
    if (i + 2 >= text.size()) return std::nullopt;
    int const high = hexadecimal(text[++i]);
    int const low = hexadecimal(text[++i]);
    if (high < 0 || low < 0) return std::nullopt;
    decoded += static_cast<char>(high * 16 + low);
  }
  return decoded;
}

std::optional<std::vector<URLQueryItem>> queryItems(std::string_view query) {
  std::vector<URLQueryItem> items;
  while (!query.empty()) {
    auto const item = query.substr(0, query.find('&'));
    query.remove_prefix(std::min(item.size() + 1, query.size()));
    auto const equals = item.find('=');
    if (equals == item.npos) continue;
    auto name = percentDecoded(item.substr(0, equals));
    auto value = percentDecoded(item.substr(equals + 1));
    if (!name || !value) return std::nullopt;
    items.push_back({std::move(*name), std::move(*value)});
  }
  return items;
}

}  // namespace vek
