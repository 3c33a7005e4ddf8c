// SPDX-License-Identifier: MIT
#include "services/identity/FirstAccount.hpp"

#include "platform/Files.hpp"
#include "records/JSON.hpp"
#include "runtime/UUID.hpp"

namespace vek::services {

std::optional<FirstAccount> FirstAccount::make(IdentityStore& store, UserID user,
                                               std::filesystem::path const& file) {
  if (store.hasAccounts()) return std::nullopt;
  FirstAccount made{.name = "user-" + randomPassword().substr(0, 5), .password = randomPassword()};
  replaceFile(file, json::encode(made) + "\n");
  store.addAccount({.subject = UUID::random().lowerCaseText(),
                    .name = made.name,
                    .email = made.name + "@vek.test",
                    .user = user},
                   hashOf(made.password));
  return made;
}

}  // namespace vek::services
