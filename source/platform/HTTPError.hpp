// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>

namespace vek {

/// An exchange that gave no HTTP answer.
class HTTPError final : public std::exception {
 public:
  enum class Code {
    cannotFindHost,
    cannotConnect,
    timedOut,
    untrustedServer,
    connectionLost,
    notHTTP,
    bodyTooLarge,
    other,
  };

  /// `detail` is what the transport knows beyond the code; it may be empty.
  HTTPError(Code code, std::string const& detail);

  [[nodiscard]] Code code() const { return code_; }
  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  Code code_;
  std::string description_;
};

}  // namespace vek
