// SPDX-License-Identifier: MIT
#include "identity/Auth0Configuration.hpp"

#include <fmt/format.h>

#include "platform/Bundle.hpp"
#include "platform/FatalError.hpp"
#include "platform/PropertyList.hpp"
#include "platform/URLComponents.hpp"

namespace vek {
namespace {

std::string described(PropertyList const& entries) {
  std::string text;
  for (auto const& [key, value] : entries) {
    text += fmt::format("{}{}: {}", text.empty() ? "" : ", ", key, value);
  }
  return "[" + text + "]";
}

}  // namespace

Auth0Configuration Auth0Configuration::ofMainBundle() {
  auto const path = Bundle::main().path("Auth0.plist");
  auto const entries = path ? readPropertyList(*path) : std::nullopt;
  if (!entries) {
    fatalError("Missing Auth0.plist file with 'ClientId' and 'Domain' entries in main bundle!");
  }
  auto const clientId = entries->find("ClientId");
  auto const domain = entries->find("Domain");
  if (clientId == entries->end() || domain == entries->end()) {
    fatalError(
        fmt::format("Auth0.plist file at {} is missing 'ClientId' and/or 'Domain' entries!\n"
                    "File currently has the following entries: {}",
                    path->string(), described(*entries)));
  }
  return {.clientId = clientId->second, .domain = domain->second};
}

std::string baseURL(std::string_view domain) {
  std::string url(domain);
  if (!url.starts_with("https")) url = "https://" + url;
  if (!url.ends_with('/')) url += '/';
  if (!URLComponents(url).url()) fatalError(fmt::format("'{}' is no domain of a URL!", domain));
  return url;
}

}  // namespace vek
