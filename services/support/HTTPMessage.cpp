// SPDX-License-Identifier: MIT
#include "services/support/HTTPMessage.hpp"

#include "platform/URLComponents.hpp"
#include "records/ErrorDTO.hpp"
#include "records/JSON.hpp"

namespace vek::services {

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
