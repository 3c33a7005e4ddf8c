// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <exception>
#include <string>

namespace vek {

/// Why no valid credentials can be had, with what led to it shown behind " CAUSE: ".
class CredentialsManagerError final : public std::exception {
 public:
  enum class Code {
    largeMinTTL,
    noCredentials,
    noRefreshToken,
    renewFailed,
    storeFailed,
    biometricsFailed,
    revokeFailed,
  };

  /// Any code but `largeMinTTL`.
  explicit CredentialsManagerError(Code code, std::exception_ptr cause = nullptr);

  /// A renewed token that lives for `lifetime`, less than the `minTTL` asked for.
  static CredentialsManagerError largeMinTTL(std::chrono::seconds minTTL,
                                             std::chrono::seconds lifetime);

  [[nodiscard]] Code code() const { return code_; }
  [[nodiscard]] std::exception_ptr const& cause() const { return cause_; }
  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  CredentialsManagerError(Code code, std::string description)
      : code_(code), description_(std::move(description)) {}

  Code code_;
  std::exception_ptr cause_;
  std::string description_;
};

}  // namespace vek
