// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "Clients/AuthClient.hpp"
#include "platform/HTTPClient.hpp"
#include "platform/Log.hpp"

namespace vek {

/// Logs in at the identity provider that the main bundle names, for the backend's use.
class AuthClientImpl {
 public:
  explicit AuthClientImpl(HTTPClient http) : http_(std::move(http)) {}

  /// Throws WebAuthError. Stops the process when the bundle names no provider.
  Task<Credentials> logIn() const;

  /// The record of the operation around `impl`.
  static AuthClient client(std::shared_ptr<AuthClientImpl const> impl);

 private:
  HTTPClient http_;
  Logger logger_{"AuthClient"};
};

}  // namespace vek
