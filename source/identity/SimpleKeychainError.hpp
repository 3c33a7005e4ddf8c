// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace vek {

/// Why the keychain did not do what it was asked.
class SimpleKeychainError final : public std::exception {
 public:
  enum class Code : std::uint8_t {
    operationNotImplemented,
    invalidParameters,
    userCanceled,
    itemNotAvailable,
    authFailed,
    duplicateItem,
    itemNotFound,
    interactionNotAllowed,
    decodeFailed,
    /// A status without a name of its own.
    other,
    /// A failure that is no status.
    unknown,
  };

  /// For a status of the keychain other than 0.
  explicit SimpleKeychainError(std::int32_t status);
  /// A failure that only a text describes.
  static SimpleKeychainError unknown(std::string const& message);

  [[nodiscard]] Code code() const { return code_; }
  /// 0 for `unknown`.
  [[nodiscard]] std::int32_t status() const { return status_; }
  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  SimpleKeychainError(Code code, std::string description)
      : code_(code), description_(std::move(description)) {}

  Code code_;
  std::int32_t status_ = 0;
  std::string description_;
};

}  // namespace vek
