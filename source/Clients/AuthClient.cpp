// SPDX-License-Identifier: MIT
#include "Clients/AuthClient.hpp"

#include <stdexcept>

namespace vek {
namespace {

Task<Credentials> failedLogin() {
  throw std::runtime_error("The login is not part of this version.");
  co_return Credentials({});
}

}  // namespace

AuthClient AuthClientKey::liveValue() {
  return {.logIn = failedLogin};
}

}  // namespace vek
