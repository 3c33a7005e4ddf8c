// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "support/TemporaryFolder.hpp"

namespace vek::test {

/// A certificate authority of a test, with a certificate for "localhost". Made anew each time.
class TestAuthority {
 public:
  TestAuthority();

  /// PEM files.
  [[nodiscard]] std::filesystem::path authority() const { return folder_ / "authority.pem"; }
  [[nodiscard]] std::filesystem::path certificate() const { return folder_ / "server.pem"; }
  [[nodiscard]] std::filesystem::path key() const { return folder_ / "server-key.pem"; }

 private:
  TemporaryFolder folder_;
};

}  // namespace vek::test
