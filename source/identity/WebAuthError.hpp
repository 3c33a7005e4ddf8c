// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "platform/CallbackValues.hpp"

namespace vek {

/// Why a login on the web failed, with what led to it shown behind " CAUSE: ".
class WebAuthError final : public std::exception {
 public:
  enum class Code {
    invalidInvitationURL,
    noAuthorizationCode,
    unknown,
    noBundleIdentifier,
    transactionActiveAlready,
    userCancelled,
    pkceNotAllowed,
    idTokenValidationFailed,
    other,
  };

  /// Any code but the first three, which have makers of their own.
  explicit WebAuthError(Code code, std::exception_ptr cause = nullptr);

  static WebAuthError invalidInvitationURL(std::string_view url);
  /// A redirect with these values; those that are secrets do not show.
  static WebAuthError noAuthorizationCode(CallbackValues const& values);
  static WebAuthError unknown(std::string message);

  [[nodiscard]] Code code() const { return code_; }
  [[nodiscard]] std::exception_ptr const& cause() const { return cause_; }
  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  WebAuthError(Code code, std::string description)
      : code_(code), description_(std::move(description)) {}

  Code code_;
  std::exception_ptr cause_;
  std::string description_;
};

}  // namespace vek
