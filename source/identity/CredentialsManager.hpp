// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <boost/json/object.hpp>

#include "identity/Auth0Authentication.hpp"
#include "identity/Credentials.hpp"
#include "identity/CredentialsStorage.hpp"
#include "runtime/DispatchGroup.hpp"
#include "runtime/Result.hpp"
#include "runtime/SerialQueue.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// A look at the user's finger or face before credentials are handed out. There is none here.
struct BioAuthentication {};

/// Keeps the user's credentials, and renews them when they have run out: once for all who ask at
/// the same time, in this program and in others. Copies share the queue and the group.
struct CredentialsManager {
  using Callback = std::function<void(Result<Credentials>)>;

  std::shared_ptr<CredentialsStorage const> storage;
  std::string storeKey;
  Auth0Authentication authentication;
  std::shared_ptr<SerialQueue> dispatchQueue =
      std::make_shared<SerialQueue>("com.auth0.credentialsmanager.serial");
  std::shared_ptr<DispatchGroup> dispatchGroup = std::make_shared<DispatchGroup>();
  std::optional<BioAuthentication> bioAuth = {};
  /// How long a caller waits for other programs to renew: longer than a request can take.
  std::chrono::milliseconds patience = std::chrono::seconds(90);

  /// Whether they are stored now. Blocks.
  bool store(Credentials const& credentials) const;

  /// Gives credentials that are valid for at least `minTTL`, and for `scope` where one is given, or
  /// a CredentialsManagerError. `parameters` and `headers` go with a renewal. The callback is
  /// called once, on a thread of the queue or of the pool.
  void credentials(std::optional<std::string> scope, std::chrono::seconds minTTL,
                   boost::json::object parameters, std::map<std::string, std::string> headers,
                   Callback callback) const;

  /// The same for work that awaits. Stopping the work does not stop a renewal.
  [[nodiscard]] Task<Credentials> credentials(
      std::optional<std::string> scope = {}, std::chrono::seconds minTTL = {},
      boost::json::object parameters = {}, std::map<std::string, std::string> headers = {}) const;
};

}  // namespace vek
