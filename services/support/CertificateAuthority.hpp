// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>

namespace vek::services {

/// The services' own certificate authority. Its certificate can vouch for nothing but the loopback
/// names (localhost, 127.0.0.1, ::1), so that trusting it trusts no other host.
class CertificateAuthority {
 public:
  /// Makes what is missing in `folder` or ends within 30 days after `now`: the authority's own key
  /// pair, and a server certificate that it issues. Throws `std::runtime_error` with the cause.
  explicit CertificateAuthority(
      std::filesystem::path folder,
      std::chrono::system_clock::time_point now = std::chrono::system_clock::now());

  /// The certificate that clients trust.
  [[nodiscard]] std::filesystem::path certificate() const { return folder_ / "authority.pem"; }
  [[nodiscard]] std::filesystem::path serverCertificate() const { return folder_ / "server.pem"; }
  [[nodiscard]] std::filesystem::path serverKey() const { return folder_ / "server-key.pem"; }

 private:
  [[nodiscard]] std::filesystem::path key() const { return folder_ / "authority-key.pem"; }

  std::filesystem::path folder_;
};

}  // namespace vek::services
