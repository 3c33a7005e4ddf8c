// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <utility>
#include <variant>

namespace vek {

/// A value or the error that stands in its place.
template <class T>
class Result {
 public:
  Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
  Result(std::exception_ptr error) : content_(std::in_place_index<1>, std::move(error)) {}

  [[nodiscard]] bool hasValue() const { return content_.index() == 0; }
  explicit operator bool() const { return hasValue(); }

  /// The value, or the error thrown.
  T& value() & {
    if (!hasValue()) std::rethrow_exception(error());
    return std::get<0>(content_);
  }
  T const& value() const& {
    if (!hasValue()) std::rethrow_exception(error());
    return std::get<0>(content_);
  }
  T value() && { return std::move(value()); }

  /// The error of a result without a value.
  [[nodiscard]] std::exception_ptr const& error() const { return std::get<1>(content_); }

 private:
  std::variant<T, std::exception_ptr> content_;
};

/// Success without a value, or an error.
template <>
class Result<void> {
 public:
  Result() = default;
  Result(std::exception_ptr error) : error_(std::move(error)) {}

  [[nodiscard]] bool hasValue() const { return error_ == nullptr; }
  explicit operator bool() const { return hasValue(); }

  void value() const {
    if (error_) std::rethrow_exception(error_);
  }

  [[nodiscard]] std::exception_ptr const& error() const { return error_; }

 private:
  std::exception_ptr error_;
};

}  // namespace vek
