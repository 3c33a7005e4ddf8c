// SPDX-License-Identifier: MIT
#include "app/SignedInUser.hpp"

#include "identity/JWT.hpp"

namespace vek {

SignedInUser SignedInUser::of(Credentials const& credentials) {
  try {
    JWT const token(credentials.idToken());
    return {.name = token.text("name").value_or(""),
            .email = token.text("email").value_or(""),
            .subject = token.sub().value_or("")};
  } catch (JWTDecodingError const&) {
    // Its text shows the token.
    return {};
  }
}

std::string SignedInUser::text() const {
  if (!name.empty() && !email.empty()) return name + " <" + email + ">";
  for (auto const* known : {&name, &email, &subject}) {
    if (!known->empty()) return *known;
  }
  return "a user without a name";
}

boost::json::object SignedInUser::object() const {
  return {{"name", name}, {"email", email}, {"subject", subject}};
}

}  // namespace vek
