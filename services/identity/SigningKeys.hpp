// SPDX-License-Identifier: MIT
#pragma once

#include <boost/json/object.hpp>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "services/identity/IdentityStore.hpp"

namespace vek::services {

/// Signs tokens by RS256 and verifies them. The newest key signs, until another takes its place;
/// its public half stays for as long as a token that it signed may live. Any thread.
class SigningKeys {
 public:
  struct Lifetimes {
    /// How long a key signs.
    std::chrono::seconds key;
    /// The longest that a token lives.
    std::chrono::seconds token;
  };

  /// The store outlives the keys.
  SigningKeys(IdentityStore& store, Lifetimes lifetimes, Date now);
  ~SigningKeys();

  /// The token with these claims.
  std::string sign(boost::json::object const& claims, Date now);

  /// The claims of a token that one of the keys signed; nothing when none did.
  [[nodiscard]] std::optional<boost::json::object> verified(std::string_view token) const;

  /// The public keys as a JSON Web Key Set.
  [[nodiscard]] std::string keySet() const;

 private:
  struct SigningKey;
  using Keys = std::vector<std::shared_ptr<SigningKey const>>;

  std::shared_ptr<SigningKey const> keyAt(Date now);
  void rotate(Date now);

  IdentityStore& store_;
  Lifetimes const lifetimes_;
  mutable std::mutex mutex_;
  /// Oldest first.
  Keys keys_;
};

}  // namespace vek::services
