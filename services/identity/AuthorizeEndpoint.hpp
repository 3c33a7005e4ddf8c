// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "runtime/Date.hpp"
#include "services/identity/AttemptLimiter.hpp"
#include "services/identity/AuthorizationRequest.hpp"
#include "services/identity/FormGuard.hpp"
#include "services/identity/IdentityConfiguration.hpp"
#include "services/identity/IdentityStore.hpp"
#include "services/identity/SignInPage.hpp"
#include "services/support/HTTPMessage.hpp"
#include "services/support/Secret.hpp"

namespace vek::services {

/// The page where a person signs in. The form goes to the URL that it came from, so that each step
/// reads the client's request anew and nothing has to be kept in between.
class AuthorizeEndpoint {
 public:
  /// The store outlives the endpoint.
  AuthorizeEndpoint(IdentityConfiguration const& configuration, IdentityStore& store);

  /// Shows the form. Any thread.
  [[nodiscard]] Response show(Request const& request) const;

  /// Takes the form, and sends the browser to the client with a code when the password is right.
  /// One thread at a time; takes as long as hashing a password does.
  Response submit(Request const& request, Date now);

 private:
  struct Attempt;

  Response signIn(Request const& request, AuthorizationRequest const& authorization,
                  Attempt const& attempt, Date now);
  [[nodiscard]] std::chrono::seconds wait(Attempt const& attempt) const;
  [[nodiscard]] std::optional<std::int64_t> accountKey(Attempt const& attempt);
  [[nodiscard]] Response form(int status, Request const& request, std::string name = {},
                              SignInForm::Problem problem = {}) const;

  IdentityConfiguration const configuration_;
  IdentityStore& store_;
  FormGuard const guard_;
  AttemptLimiter attemptsOfAccount_;
  AttemptLimiter attemptsOfAddress_;
  /// What an unknown name is checked against, so that it takes as long as a known one. It is the
  /// hash of no password.
  PasswordHash const nobody_{.salt = randomToken(), .hash = randomToken()};
};

}  // namespace vek::services
