// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "support/TemporaryFolder.hpp"

namespace vek::test {

/// A certificate authority of a test, with certificates for a server. Made anew each time.
class TestAuthority {
 public:
  /// PEM files of a server.
  struct Identity {
    std::filesystem::path certificate;
    std::filesystem::path key;
  };

  TestAuthority();

  /// PEM files of the authority, and of a good certificate for "localhost".
  [[nodiscard]] std::filesystem::path authority() const { return folder_ / "authority.pem"; }
  [[nodiscard]] std::filesystem::path certificate() const { return localhost().certificate; }
  [[nodiscard]] std::filesystem::path key() const { return folder_ / "server-key.pem"; }

  [[nodiscard]] Identity localhost() const { return {folder_ / "server.pem", key()}; }
  /// A good certificate for another name.
  [[nodiscard]] Identity otherName() const { return {folder_ / "other-name.pem", key()}; }
  /// A certificate for "localhost" that ended an hour ago.
  [[nodiscard]] Identity expired() const { return {folder_ / "expired.pem", key()}; }

 private:
  TemporaryFolder folder_;
};

}  // namespace vek::test
