// SPDX-License-Identifier: MIT
#include "services/identity/Tokens.hpp"

#include "services/identity/Scope.hpp"

namespace vek::services {

namespace {

std::int64_t seconds(Date date) {
  return std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
}

std::string_view text(boost::json::object const& claims, std::string_view name) {
  auto const* value = claims.if_contains(name);
  return value != nullptr && value->is_string() ? std::string_view(value->get_string())
                                                : std::string_view();
}

}  // namespace

std::string Tokens::accessToken(Grant const& grant, Date now) {
  return keys_.sign({{"iss", configuration_.issuer},
                     {"sub", grant.account.subject},
                     {"aud", configuration_.audience},
                     {"azp", configuration_.client},
                     {"iat", seconds(now)},
                     {"exp", seconds(now + configuration_.accessTokenLifetime)},
                     {"sid", grant.id},
                     {"scope", grant.scope}},
                    now);
}

std::string Tokens::idToken(Grant const& grant, std::optional<std::string> const& nonce, Date now) {
  boost::json::object claims{{"iss", configuration_.issuer},
                             {"sub", grant.account.subject},
                             {"aud", configuration_.client},
                             {"iat", seconds(now)},
                             {"exp", seconds(now + configuration_.idTokenLifetime)},
                             {"auth_time", seconds(grant.signedIn)},
                             {"sid", grant.id}};
  if (nonce) claims["nonce"] = *nonce;
  if (hasWord(grant.scope, "profile")) claims["name"] = grant.account.name;
  if (hasWord(grant.scope, "email")) claims["email"] = grant.account.email;
  return keys_.sign(claims, now);
}

std::optional<UserID> Tokens::user(std::string_view accessToken, Date now) {
  auto const claims = keys_.verified(accessToken);
  if (!claims || text(*claims, "iss") != configuration_.issuer ||
      text(*claims, "aud") != configuration_.audience) {
    return std::nullopt;
  }
  auto const* end = claims->if_contains("exp");
  if (end == nullptr || !end->is_int64() || end->get_int64() <= seconds(now)) return std::nullopt;
  return store_.userOfGrant(text(*claims, "sid"));
}

}  // namespace vek::services
