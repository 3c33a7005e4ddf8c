// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "support/Environment.hpp"
#include "support/LocalServices.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek::test {

/// Leaves the credentials of the services' first account where a program finds them that has this
/// data home and no Secret Service.
void storeCredentials(LocalServices const& services, std::filesystem::path const& dataHome);

/// Signs this process in at the services, with a keychain of its own.
class SignedInProcess {
 public:
  explicit SignedInProcess(LocalServices const& services);

 private:
  TemporaryFolder folder_;
  EnvironmentVariable data_{"XDG_DATA_HOME", folder_.path().string()};
};

}  // namespace vek::test
