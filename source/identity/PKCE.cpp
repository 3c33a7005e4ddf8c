// SPDX-License-Identifier: MIT
#include "identity/PKCE.hpp"

#include <chrono>
#include <utility>

#include "identity/IDTokenValidator.hpp"
#include "identity/WebAuthError.hpp"
#include "platform/Cryptography.hpp"
#include "records/Base64URL.hpp"
#include "runtime/CancellationError.hpp"

namespace vek {
namespace {

using enum WebAuthError::Code;

Task<Credentials> exchangeCode(PKCE const& pkce, std::string code) {
  try {
    co_return co_await pkce.authentication.codeExchange(code, pkce.verifier, pkce.redirectURL)
        .value();
  } catch (AuthenticationError const& error) {
    if (std::string_view(error.what()) == "Unauthorized") throw WebAuthError(pkceNotAllowed);
    throw WebAuthError(other, std::current_exception());
  }
}

IDTokenValidatorContext context(PKCE const& pkce) {
  auto const nonce = pkce.defaults.find("nonce");
  return {.issuer = pkce.issuer,
          .audience = pkce.authentication.clientId,
          .jwksRequest = pkce.authentication.jwks(),
          .leeway = pkce.leeway,
          .maxAge = pkce.maxAge,
          .nonce = nonce == pkce.defaults.end() ? std::nullopt : std::optional(nonce->second),
          .organization = pkce.organization};
}

Task<> validate(PKCE const& pkce, std::string idToken) {
  IDTokenValidator const validator(context(pkce), std::chrono::system_clock::now());
  try {
    co_await validator.validate(std::move(idToken));
  } catch (CancellationError const&) {
    throw;
  } catch (...) {
    throw WebAuthError(idTokenValidationFailed, std::current_exception());
  }
}

Task<Credentials> exchangeAndValidate(PKCE pkce, CallbackValues values) {
  auto const code = values.find("code");
  if (code == values.end()) throw WebAuthError::noAuthorizationCode(values);
  auto credentials = co_await exchangeCode(pkce, code->second);
  co_await validate(pkce, credentials.idToken());
  co_return credentials;
}

}  // namespace

Task<Credentials> PKCE::credentials(CallbackValues values) const {
  return exchangeAndValidate(*this, std::move(values));
}

std::string PKCE::randomText() {
  return Base64URL::encode(randomBytes(32));
}

std::string PKCE::challenge(std::string_view verifier) {
  return Base64URL::encode(sha256(verifier));
}

}  // namespace vek
