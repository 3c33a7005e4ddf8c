// SPDX-License-Identifier: MIT
#pragma once

#include <stop_token>
#include <utility>

#include "runtime/DependencyValues.hpp"
#include "runtime/Executor.hpp"

namespace vek {

/// What a piece of work carries with it across threads.
struct Environment {
  Executor* executor = nullptr;
  DependencyValues dependencies;
  std::stop_token stopToken;

  /// That of the work which runs on this thread, or null outside of any.
  static Environment const* current();

  /// True when the work that runs on this thread was told to stop.
  static bool isCancelled();

  /// Makes `environment` the current one of this thread for as long as it lives.
  class Scope {
   public:
    explicit Scope(Environment const* environment);
    Scope(Scope const&) = delete;
    Scope& operator=(Scope const&) = delete;
    ~Scope();

   private:
    Environment const* outer_;
  };
};

/// Runs `operation` with the current values as `update` changed them.
template <class Update, class Operation>
  requires std::is_invocable_v<Update, DependencyValues&>
decltype(auto) withDependencies(Update&& update, Operation&& operation) {
  auto const* outer = Environment::current();
  auto environment = outer ? *outer : Environment();
  std::forward<Update>(update)(environment.dependencies);
  Environment::Scope scope(&environment);
  return std::forward<Operation>(operation)();
}

}  // namespace vek
