// SPDX-License-Identifier: MIT
#include "platform/CallbackValues.hpp"

#include <algorithm>

#include "platform/URLComponents.hpp"

namespace vek {
namespace {

/// The pairs of a fragment, of which those with a further "=" do not count.
std::optional<std::vector<URLQueryItem>> fragmentItems(std::string_view fragment) {
  std::string pairs;
  while (!fragment.empty()) {
    auto const pair = fragment.substr(0, fragment.find('&'));
    fragment.remove_prefix(std::min(pair.size() + 1, fragment.size()));
    if (std::ranges::count(pair, '=') == 1) pairs += std::string(pair) + "&";
  }
  return queryItems(pairs);
}

}  // namespace

std::optional<CallbackValues> callbackValues(std::string_view url) {
  URLComponents const components(url);
  auto const fromQuery = components.queryItems();
  auto const fromFragment = fragmentItems(components.fragment());
  if (!components.url() || !fromQuery || !fromFragment) return std::nullopt;
  CallbackValues values;
  for (auto const* items : {&*fromFragment, &*fromQuery}) {
    for (auto const& [name, value] : *items) values.insert_or_assign(name, value);
  }
  return values;
}

}  // namespace vek
