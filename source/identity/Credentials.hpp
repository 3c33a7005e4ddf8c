// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "runtime/Date.hpp"

namespace vek {

/// The tokens of one login. An object that never changes: copies are the same object, and only
/// they compare equal.
class Credentials {
 public:
  struct Fields {
    std::string accessToken;
    std::string tokenType;
    /// When the access token ends.
    Date expiresIn;
    std::optional<std::string> refreshToken = {};
    std::string idToken = {};
    std::optional<std::string> scope = {};
    std::optional<std::string> recoveryCode = {};
  };

  explicit Credentials(Fields fields)
      : fields_(std::make_shared<Fields const>(std::move(fields))) {}

  [[nodiscard]] std::string const& accessToken() const { return fields_->accessToken; }
  [[nodiscard]] std::string const& tokenType() const { return fields_->tokenType; }
  [[nodiscard]] Date expiresIn() const { return fields_->expiresIn; }
  [[nodiscard]] std::optional<std::string> const& refreshToken() const {
    return fields_->refreshToken;
  }
  [[nodiscard]] std::string const& idToken() const { return fields_->idToken; }
  [[nodiscard]] std::optional<std::string> const& scope() const { return fields_->scope; }
  [[nodiscard]] std::optional<std::string> const& recoveryCode() const {
    return fields_->recoveryCode;
  }

  /// The text form, in which each secret reads "<REDACTED>".
  [[nodiscard]] std::string description() const;

  bool operator==(Credentials const&) const = default;

 private:
  std::shared_ptr<Fields const> fields_;
};

}  // namespace vek
