// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace vek {

/// Why an ID token proves nothing.
class IDTokenValidationError final : public std::exception {
 public:
  enum class Code {
    missingIss,
    mismatchedIss,
    missingSub,
    missingAud,
    mismatchedAudString,
    mismatchedAudArray,
    missingExp,
    pastExp,
    missingIat,
    missingNonce,
    mismatchedNonce,
    missingAzp,
    mismatchedAzp,
    missingAuthTime,
    pastLastAuth,
    missingOrgId,
    mismatchedOrgId,
    missingOrgName,
    mismatchedOrgName,
    invalidAlgorithm,
    missingPublicKey,
    invalidSignature,
  };

  /// `first` and `second` are the values that the code's text names, in their order there: what was
  /// found for an algorithm or a key, the current time before the token's, else the expected value
  /// before the one found.
  explicit IDTokenValidationError(Code code, std::string_view first = {},
                                  std::string_view second = {});

  [[nodiscard]] Code code() const { return code_; }
  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  Code code_;
  std::string description_;
};

/// A text in place of an ID token that is none. It says no more, since the text may be a secret.
class IDTokenDecodingError final : public std::exception {
 public:
  enum class Code { cannotDecode };

  [[nodiscard]] static Code code() { return Code::cannotDecode; }
  [[nodiscard]] char const* what() const noexcept override {
    return "ID token could not be decoded";
  }
};

}  // namespace vek
