// SPDX-License-Identifier: MIT
#include "Clients/APIClientError.hpp"

#include <utility>

namespace vek {
namespace {

std::string description(APIClientError const& error) {
  using Type = APIClientError::Type;
  std::string const end = ". Additional info: " + error.additionalInfo.value_or("");
  if (auto const* http = std::get_if<Type::httpError>(&error.type.value)) {
    return "Unexpected HTTP response from " + error.url + ". Code: " + std::to_string(http->code) +
           end;
  }
  if (std::holds_alternative<Type::invalidResponse>(error.type.value)) {
    return "Invalid response from " + error.url + end;
  }
  if (std::holds_alternative<Type::invalidURL>(error.type.value)) {
    return "Invalid URL from " + error.url + end;
  }
  return "JSON decoding error from " + error.url + end;
}

}  // namespace

APIClientError::APIClientError(std::string urlText, Type errorType, std::optional<std::string> info)
    : url(std::move(urlText)),
      type(errorType),
      additionalInfo(std::move(info)),
      description_(description(*this)) {}

}  // namespace vek
