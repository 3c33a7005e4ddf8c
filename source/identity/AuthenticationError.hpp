// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>

#include <boost/json/object.hpp>

namespace vek {

/// What the identity provider refused, or why it could not be asked. The text shows no token.
class AuthenticationError final : public std::exception {
 public:
  /// A refusal, as the provider or the redirect words it.
  explicit AuthenticationError(boost::json::object info, int statusCode = 0);
  /// A failure on this side: of the transport, or to understand the answer.
  explicit AuthenticationError(std::exception_ptr cause, int statusCode = 0);

  [[nodiscard]] boost::json::object const& info() const { return info_; }
  /// The status of HTTP, or 0 without an answer.
  [[nodiscard]] int statusCode() const { return statusCode_; }
  [[nodiscard]] std::exception_ptr const& cause() const { return cause_; }
  [[nodiscard]] std::string code() const;
  /// The provider's own words where it has some, with a cause behind " CAUSE: ".
  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  boost::json::object info_;
  int statusCode_;
  std::exception_ptr cause_;
  std::string description_;
};

}  // namespace vek
