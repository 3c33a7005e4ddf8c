// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "records/Field.hpp"
#include "services/identity/IdentityStore.hpp"

namespace vek::services {

/// The name and password of the account that new services start with, made at random.
struct FirstAccount {
  std::string name;
  std::string password;

  /// Makes the account for `user`, unless there is one already, and says what it was given. The
  /// same goes into `file`, for its owner alone: whoever may read it could read the services' keys
  /// and data as well.
  static std::optional<FirstAccount> make(IdentityStore& store, UserID user,
                                          std::filesystem::path const& file);

  static constexpr auto fields() {
    return std::tuple{Field{"name", &FirstAccount::name},
                      Field{"password", &FirstAccount::password}};
  }
};

}  // namespace vek::services
