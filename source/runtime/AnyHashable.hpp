// SPDX-License-Identifier: MIT
#pragma once

#include <any>
#include <cstddef>
#include <functional>
#include <typeindex>
#include <utility>

namespace vek {

/// A value of any type that can be compared and hashed. Values of different types are different.
class AnyHashable {
 public:
  template <class T>
    requires(!std::same_as<std::remove_cvref_t<T>, AnyHashable>)
  AnyHashable(T value)
      : hash_(std::hash<T>()(value) ^ std::type_index(typeid(T)).hash_code()),
        equals_([](std::any const& left, std::any const& right) {
          return std::any_cast<T const&>(left) == std::any_cast<T const&>(right);
        }),
        value_(std::move(value)) {}

  bool operator==(AnyHashable const& other) const {
    return hash_ == other.hash_ && value_.type() == other.value_.type() &&
           equals_(value_, other.value_);
  }

  [[nodiscard]] std::type_index type() const { return value_.type(); }
  [[nodiscard]] std::size_t hash() const { return hash_; }

 private:
  std::size_t hash_;
  bool (*equals_)(std::any const&, std::any const&);
  std::any value_;
};

}  // namespace vek

template <>
struct std::hash<vek::AnyHashable> {
  std::size_t operator()(vek::AnyHashable const& value) const noexcept { return value.hash(); }
};
