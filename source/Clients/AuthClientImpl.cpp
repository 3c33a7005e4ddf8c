// SPDX-License-Identifier: MIT
#include "Clients/AuthClientImpl.hpp"

#include <fmt/format.h>

#include "identity/Auth0WebAuth.hpp"
#include "platform/Deployment.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {

Task<Credentials> AuthClientImpl::logIn() const {
  auto webAuth = Auth0WebAuth::ofMainBundle(http_);
  webAuth.parameters["audience"] = deployment().audience;
  try {
    co_return co_await webAuth.start();
  } catch (std::exception const& error) {
    logger_.error(fmt::format("Failed to start Auth0 web auth: {}", error.what()));
    throw;
  }
}

AuthClient AuthClientImpl::client(std::shared_ptr<AuthClientImpl const> impl) {
  return {.logIn = [impl] { return on(ThreadPool::shared(), impl->logIn()); }};
}

AuthClient AuthClientKey::liveValue() {
  return AuthClientImpl::client(std::make_shared<AuthClientImpl const>(HTTPClient::shared()));
}

}  // namespace vek
