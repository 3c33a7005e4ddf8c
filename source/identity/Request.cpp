// SPDX-License-Identifier: MIT
#include "identity/Request.hpp"

#include <utility>
#include <vector>

#include <fmt/format.h>
#include <boost/json/serialize.hpp>

#include "platform/URLComponents.hpp"
#include "runtime/CancellationError.hpp"

namespace vek {
namespace {

/// More than any answer of the provider needs.
constexpr std::size_t largestAnswer = std::size_t{1} << 20U;

std::string textOf(boost::json::value const& value) {
  return value.is_string() ? std::string(value.as_string()) : boost::json::serialize(value);
}

HTTPRequest makeHTTPRequest(RequestFields&& fields) {
  HTTPRequest request{.method = std::move(fields.method), .url = {}, .largestBody = largestAnswer};
  URLComponents components(fields.url);
  if (request.method != "GET") {
    request.body = boost::json::serialize(fields.parameters);
    fields.headers.try_emplace("Content-Type", "application/json");
  } else if (!fields.parameters.empty()) {
    std::vector<URLQueryItem> items;
    for (auto const& [name, value] : fields.parameters) items.push_back({name, textOf(value)});
    components.setQueryItems(items);
  }
  request.url = components.text();
  if (auto telemetry = fields.telemetry.value()) {
    fields.headers.insert_or_assign("Auth0-Client", std::move(*telemetry));
  }
  for (auto& [name, value] : fields.headers) request.headers.push_back({name, std::move(value)});
  return request;
}

}  // namespace

Task<Response> send(RequestFields fields) {
  auto const session = fields.session;
  auto const logger = fields.logger;
  auto request = makeHTTPRequest(std::move(fields));
  auto const name = fmt::format("{} {}", request.method, request.url);
  Response result;
  try {
    result.response = co_await session.send(std::move(request));
  } catch (CancellationError const&) {
    throw;
  } catch (...) {
    result.error = std::current_exception();
  }
  if (logger) logger->debug(fmt::format("{}: {}", name, result.statusCode()));
  if (result.response && !result.response->body.empty()) {
    result.data = std::exchange(result.response->body, {});
  }
  co_return result;
}

}  // namespace vek
