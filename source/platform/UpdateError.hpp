// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>

namespace vek {

/// Why a check for updates came to nothing, in words for the user.
class UpdateError final : public std::exception {
 public:
  enum class Code {
    noFeed,
    insecureFeed,
    noKey,
    unreachable,
    refused,
    badSignature,
    malformed,
    outdated,
  };

  /// `detail` is what is known beyond the code: nothing, some words, or a sentence with its stop.
  explicit UpdateError(Code code, std::string const& detail = "");

  [[nodiscard]] Code code() const { return code_; }
  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  Code code_;
  std::string description_;
};

}  // namespace vek
