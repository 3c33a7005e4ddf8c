// SPDX-License-Identifier: MIT
#include "platform/Bundle.hpp"

#include "platform/Deployment.hpp"

namespace vek {

Bundle Bundle::main() {
  return {.bundleIdentifier = "com.vek.app", .version = VEK_VERSION};
}

std::optional<std::filesystem::path> Bundle::path(std::string_view resource) const {
  if (resource != "Auth0.plist") return std::nullopt;
  auto file = deployment().authConfiguration;
  std::error_code ignored;
  if (!std::filesystem::exists(file, ignored)) return std::nullopt;
  return file;
}

}  // namespace vek
