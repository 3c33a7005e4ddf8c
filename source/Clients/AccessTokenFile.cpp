// SPDX-License-Identifier: MIT
#include "Clients/AccessTokenFile.hpp"

#include <chrono>
#include <optional>
#include <string>

#include "identity/CredentialsManagerError.hpp"
#include "platform/Deployment.hpp"
#include "platform/Files.hpp"
#include "platform/Log.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {
namespace {

/// The file's text without the white space around it; empty when there is none to read.
std::string tokenIn(std::filesystem::path const& file) {
  constexpr char const* whiteSpace = " \t\r\n";
  std::optional<std::string> content;
  try {
    content = readFile(file);
  } catch (std::exception const& error) {
    Logger("CredentialsClient")
        .error(std::string("The access token cannot be read: ") + error.what());
  }
  if (!content) return {};
  auto const begin = content->find_first_not_of(whiteSpace);
  if (begin == std::string::npos) return {};
  return content->substr(begin, content->find_last_not_of(whiteSpace) + 1 - begin);
}

Task<Credentials> credentialsIn(std::filesystem::path file) {
  std::string token = tokenIn(file);
  if (token.empty()) {
    throw CredentialsManagerError(CredentialsManagerError::Code::noCredentials);
  }
  co_return Credentials({.accessToken = std::move(token),
                         .tokenType = "Bearer",
                         .expiresIn = std::chrono::system_clock::now() + std::chrono::hours(1)});
}

Task<bool> refused() {
  co_return false;
}

}  // namespace

CredentialsClient credentialsFromAccessTokenFile(std::filesystem::path file) {
  return {.storeCredentials = [](Credentials const&) { return refused(); },
          .credentials =
              [file = std::move(file)] { return on(ThreadPool::shared(), credentialsIn(file)); },
          .logOut = [] { return refused(); }};
}

CredentialsClient CredentialsClientKey::liveValue() {
  return credentialsFromAccessTokenFile(deployment().accessTokenFile);
}

}  // namespace vek
