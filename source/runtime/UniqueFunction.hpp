// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <memory>
#include <type_traits>
#include <utility>

namespace vek {

template <class Signature>
class UniqueFunction;

/// A callable that is owned once: std::function for callables that can only be moved.
template <class Result, class... Arguments>
class UniqueFunction<Result(Arguments...)> {
 public:
  UniqueFunction() = default;
  UniqueFunction(std::nullptr_t) {}

  template <class F>
    requires(!std::same_as<std::remove_cvref_t<F>, UniqueFunction> &&
             std::is_invocable_r_v<Result, F&, Arguments...>)
  UniqueFunction(F&& function)
      : callable_(std::make_unique<Holder<std::decay_t<F>>>(std::forward<F>(function))) {}

  Result operator()(Arguments... arguments) const {
    return callable_->call(std::forward<Arguments>(arguments)...);
  }

  explicit operator bool() const { return callable_ != nullptr; }

 private:
  struct Callable {
    virtual ~Callable() = default;
    virtual Result call(Arguments... arguments) = 0;
  };

  template <class F>
  struct Holder final : Callable {
    explicit Holder(F&& f) : function(std::move(f)) {}
    explicit Holder(F const& f) : function(f) {}
    Result call(Arguments... arguments) override {
      return function(std::forward<Arguments>(arguments)...);
    }
    F function;
  };

  std::unique_ptr<Callable> callable_;
};

}  // namespace vek
