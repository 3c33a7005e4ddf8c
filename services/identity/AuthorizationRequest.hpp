// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "services/identity/IdentityConfiguration.hpp"
#include "services/support/HTTPMessage.hpp"

namespace vek::services {

/// A request by nobody known, or with an answer to go to nowhere known: its browser is sent
/// nowhere. The text is for the user.
struct UntrustedRequest : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What is wrong with a known client's request: the location that tells the client so.
struct RefusedRequest {
  std::string location;
};

/// A client's request that a user be signed in, with a proof key.
struct AuthorizationRequest {
  std::string client;
  std::string redirectURL;
  /// The base64url text of the SHA-256 of what the client will prove itself with.
  std::string challenge;
  /// The words of the asked scope that mean something here.
  std::string scope;
  std::optional<std::string> nonce;
  std::optional<std::string> state;

  /// Reads the query of an authorize URL. Throws `UntrustedRequest` and `RefusedRequest`.
  static AuthorizationRequest read(Items const& query, IdentityConfiguration const& configuration);

  /// Where the browser takes the code, or the error, to the client.
  [[nodiscard]] std::string locationWithCode(std::string const& code) const;
  [[nodiscard]] std::string locationWithError(std::string_view error,
                                              std::string_view description) const;

 private:
  [[nodiscard]] std::string location(Items items) const;
};

}  // namespace vek::services
