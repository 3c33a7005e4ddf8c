// SPDX-License-Identifier: MIT
#include "services/support/HTTPMessage.hpp"

#include <algorithm>

#include "platform/URLComponents.hpp"
#include "records/ErrorDTO.hpp"
#include "records/JSON.hpp"

namespace vek::services {

namespace {

char lowerCase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// A name or a value of a form, in which a blank is a plus sign.
std::optional<std::string> formDecoded(std::string_view text) {
  std::string spaced(text);
  std::ranges::replace(spaced, '+', ' ');
  return percentDecoded(spaced);
}

}  // namespace

std::optional<std::string> Request::queryItem(std::string_view name) const {
  for (auto const& [key, value] : query) {
    if (key == name) return value;
  }
  return std::nullopt;
}

std::string_view Request::header(std::string_view name) const {
  auto const isSame = [](char a, char b) { return lowerCase(a) == lowerCase(b); };
  for (auto const& [key, value] : headers) {
    if (std::ranges::equal(key, name, isSame)) return value;
  }
  return {};
}

Response Response::refusal(int status, std::string_view message) {
  return {.status = status, .body = json::encode(ErrorDTO{.message = std::string(message)})};
}

std::optional<Items> readItems(std::string_view text) {
  Items items;
  while (!text.empty()) {
    auto const end = text.find('&');
    auto const item = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    auto const equals = item.find('=');
    auto name = formDecoded(item.substr(0, equals));
    auto value = formDecoded(equals == std::string_view::npos ? std::string_view{}
                                                              : item.substr(equals + 1));
    if (!name || !value) return std::nullopt;
    items.emplace_back(std::move(*name), std::move(*value));
  }
  return items;
}

bool readTarget(std::string_view target, Request& request) {
  if (!target.starts_with('/')) return false;
  auto const mark = target.find('?');
  auto path = percentDecoded(target.substr(0, mark));
  if (!path) return false;
  request.path = std::move(*path);
  if (mark == std::string_view::npos) return true;
  auto query = readItems(target.substr(mark + 1));
  if (!query) return false;
  request.query = std::move(*query);
  return true;
}

}  // namespace vek::services
