// SPDX-License-Identifier: MIT
#include "services/backend/AccessToken.hpp"

#include "platform/Files.hpp"
#include "services/support/Secret.hpp"

namespace vek::services {

void grantAccessToken(BackendStore& store, UserID user, std::filesystem::path const& file) {
  auto token = readFile(file).value_or("");
  while (token.ends_with('\n')) token.pop_back();
  if (token.empty()) {
    token = randomToken();
    replaceFile(file, token);
  }
  auto const hash = tokenHash(token);
  if (store.user(hash) != user) store.setToken(user, hash);
}

}  // namespace vek::services
