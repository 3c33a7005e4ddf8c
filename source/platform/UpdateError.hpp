// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>

namespace vek {

/// Why a check for updates came to nothing. Its text is for the log; what the user reads follows
/// from the code.
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
  explicit UpdateError(Code code, std::string detail = "");

  [[nodiscard]] Code code() const { return code_; }
  [[nodiscard]] std::string const& detail() const { return detail_; }
  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  Code code_;
  std::string detail_;
  std::string description_;
};

}  // namespace vek
