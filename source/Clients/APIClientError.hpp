// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <variant>

namespace vek {

/// An answer of the backend that is not the expected one.
class APIClientError final : public std::exception {
 public:
  struct Type {
    struct httpError {
      int code;
      bool operator==(httpError const&) const = default;
    };
    struct invalidResponse {
      bool operator==(invalidResponse const&) const = default;
    };
    struct invalidURL {
      bool operator==(invalidURL const&) const = default;
    };
    struct jsonDecoding {
      bool operator==(jsonDecoding const&) const = default;
    };
    std::variant<httpError, invalidResponse, invalidURL, jsonDecoding> value;
    bool operator==(Type const&) const = default;
  };

  APIClientError(std::string url, Type type, std::optional<std::string> additionalInfo = {});

  std::string url;
  Type type;
  std::optional<std::string> additionalInfo;

  [[nodiscard]] char const* what() const noexcept override { return description_.c_str(); }

 private:
  std::string description_;
};

}  // namespace vek
