// SPDX-License-Identifier: MIT
#include "services/support/HTTPMessage.hpp"

#include "records/ErrorDTO.hpp"
#include "records/JSON.hpp"

namespace vek::services {

namespace {

int hexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded += text[i];
      continue;
    }
    if (text.size() - i < 3) return std::nullopt;
    int const high = hexDigit(text[i + 1]);
    int const low = hexDigit(text[i + 2]);
    if (high < 0 || low < 0) return std::nullopt;
    decoded += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return decoded;
}

}  // namespace

std::optional<std::string> Request::queryItem(std::string_view name) const {
  for (auto const& [key, value] : query) {
    if (key == name) return value;
  }
  return std::nullopt;
}

Response Response::refusal(int status, std::string_view message) {
  return {.status = status, .body = json::encode(ErrorDTO{.message = std::string(message)})};
}

bool readTarget(std::string_view target, Request& request) {
  if (!target.starts_with('/')) return false;
  auto const mark = target.find('?');
  auto path = percentDecoded(target.substr(0, mark));
  if (!path) return false;
  request.path = std::move(*path);
  if (mark == std::string_view::npos) return true;

  for (auto rest = target.substr(mark + 1); !rest.empty();) {
    auto const end = rest.find('&');
    auto const item = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
    auto const equals = item.find('=');
    auto name = percentDecoded(item.substr(0, equals));
    auto value = percentDecoded(equals == std::string_view::npos ? std::string_view{}
                                                                 : item.substr(equals + 1));
    if (!name || !value) return false;
    request.query.emplace_back(std::move(*name), std::move(*value));
  }
  return true;
}

}  // namespace vek::services
