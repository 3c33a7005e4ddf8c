// SPDX-License-Identifier: MIT
#include "services/identity/IdentityConfiguration.hpp"

#include <fmt/format.h>

#include "platform/Files.hpp"

namespace vek::services {

IdentityConfiguration IdentityConfiguration::onPort(std::uint16_t port, std::string audience) {
  IdentityConfiguration configuration;
  configuration.issuer = fmt::format("https://localhost:{}/", port);
  configuration.audience = std::move(audience);
  return configuration;
}

void IdentityConfiguration::writePropertyList(std::filesystem::path const& file) const {
  replaceFile(file, fmt::format(R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
	<key>ClientId</key>
	<string>{}</string>
	<key>Domain</key>
	<string>{}</string>
</dict>
</plist>
)",
                                client, issuer));
}

}  // namespace vek::services
