// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <string>

namespace vek {

/// The form in which a failure enters state: equal to its own copies only, with the description
/// that a view shows.
class ErrorObject {
 public:
  explicit ErrorObject(std::exception_ptr error);

  /// The `what()` of the error.
  [[nodiscard]] std::string const& localizedDescription() const { return content_->description; }
  /// The error itself, for those who must tell one kind from another.
  [[nodiscard]] std::exception_ptr const& error() const { return content_->error; }

  bool operator==(ErrorObject const& other) const = default;
  [[nodiscard]] std::size_t hash() const { return std::hash<void const*>()(content_.get()); }

 private:
  struct Content {
    std::exception_ptr error;
    std::string description;
  };
  std::shared_ptr<Content const> content_;
};

}  // namespace vek
