// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <boost/json/object.hpp>

namespace vek {

/// A text that is no token. Its own text shows the token, so it must not leave the validation.
class JWTDecodingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A signed token taken apart. Nothing is checked yet: anybody may have written it.
class JWT {
 public:
  /// Seconds since 1970, of a wider range than dates of the system.
  using Time = std::chrono::sys_time<std::chrono::duration<double>>;

  /// Throws JWTDecodingError.
  explicit JWT(std::string string);

  [[nodiscard]] boost::json::object const& header() const { return header_; }
  [[nodiscard]] boost::json::object const& body() const { return body_; }
  /// As it stands in the token; absent when it is empty.
  [[nodiscard]] std::optional<std::string> signature() const;
  /// What the signature is over.
  [[nodiscard]] std::string_view signedPart() const;
  [[nodiscard]] std::string const& string() const { return string_; }

  // Claims, absent where they are missing or of another type.
  [[nodiscard]] std::optional<std::string> iss() const { return text("iss"); }
  [[nodiscard]] std::optional<std::string> sub() const { return text("sub"); }
  [[nodiscard]] std::optional<std::vector<std::string>> aud() const;
  [[nodiscard]] std::optional<Time> exp() const { return time("exp"); }
  [[nodiscard]] std::optional<Time> iat() const { return time("iat"); }
  [[nodiscard]] std::optional<Time> nbf() const { return time("nbf"); }
  [[nodiscard]] std::optional<std::string> jti() const { return text("jti"); }
  [[nodiscard]] std::optional<std::string> text(std::string_view claim) const;
  /// A number beyond the year 9999 is no time.
  [[nodiscard]] std::optional<Time> time(std::string_view claim) const;
  /// A field of the header.
  [[nodiscard]] std::optional<std::string> headerText(std::string_view field) const;

 private:
  std::string string_;
  boost::json::object header_;
  boost::json::object body_;
};

}  // namespace vek
