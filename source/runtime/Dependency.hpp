// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <source_location>
#include <string_view>
#include <utility>

#include "runtime/Environment.hpp"

namespace vek {

/// A field through which a feature or a client reads the value of a key. Values that were in force
/// when the holder was built win over those of the moment of the read.
template <DependencyKey Key>
class Dependency {
 public:
  explicit Dependency(DependencyKeyPath<Key> keyPath_ = {},
                      std::source_location location = std::source_location::current())
      : keyPath(keyPath_),
        fileID(location.function_name()),
        filePath(location.file_name()),
        line(location.line()),
        column(location.column()) {}

  [[nodiscard]] std::shared_ptr<typename Key::Value const> value() const {
    return DependencyValues::current().merging(initialValues)[keyPath];
  }

  /// `client->operation(…)`: the value lives until the end of the full expression, also when that
  /// awaits.
  std::shared_ptr<typename Key::Value const> operator->() const { return value(); }

 private:
  DependencyValues initialValues = DependencyValues::current();
  [[no_unique_address]] DependencyKeyPath<Key> keyPath;
  std::string_view fileID;
  std::string_view filePath;
  std::uint_least32_t line;
  std::uint_least32_t column;
};

/// The captured scope of `withEscapedDependencies`.
class DependencyValues::Continuation {
 public:
  explicit Continuation(DependencyValues values) : dependencies(std::move(values)) {}

  /// Runs `operation` in the captured scope, on whatever thread calls this.
  template <class Operation>
  decltype(auto) yield(Operation&& operation) const {
    return withDependencies([this](DependencyValues& values) { values = dependencies; },
                            std::forward<Operation>(operation));
  }

 private:
  DependencyValues dependencies;
};

/// Hands `body` the current values, to be restored wherever it takes them.
template <class Body>
decltype(auto) withEscapedDependencies(Body&& body) {
  return std::forward<Body>(body)(DependencyValues::Continuation(DependencyValues::current()));
}

}  // namespace vek
