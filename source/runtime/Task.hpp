// SPDX-License-Identifier: MIT
#pragma once

#include <coroutine>
#include <exception>
#include <utility>
#include <variant>

#include "runtime/CancellationError.hpp"
#include "runtime/Environment.hpp"
#include "runtime/Result.hpp"

namespace vek {

/// The part of every coroutine of ours that does not depend on its result.
struct PromiseBase {
  Environment const* environment = nullptr;
  PromiseBase* continuation = nullptr;
  /// The continuation belongs to another executor and is posted there.
  bool hopsBack = false;
  std::coroutine_handle<> handle;

  /// Resumes this coroutine and then, one after the other, all that hand control on to each other.
  /// Nothing is resumed from within another resume, so depth costs no stack.
  void resume();
  /// Lets the `resume` that runs on this thread go on with this coroutine.
  void resumeNext();
  /// Resumes this coroutine on its own executor, later.
  void post();
  /// Goes on with whoever awaits this coroutine, which has ended.
  void finish() const;
};

/// Where a coroutine leaves its value or its error.
template <class T>
struct ReturningPromise : PromiseBase {
  std::variant<std::monostate, T, std::exception_ptr> outcome;

  template <class U>
  void return_value(U&& value) {
    outcome.template emplace<1>(std::forward<U>(value));
  }
  void unhandled_exception() { outcome.template emplace<2>(std::current_exception()); }

  T take() {
    if (outcome.index() == 2) std::rethrow_exception(std::get<2>(outcome));
    return std::move(std::get<1>(outcome));
  }
};

template <>
struct ReturningPromise<void> : PromiseBase {
  std::exception_ptr error;

  void return_void() {}
  void unhandled_exception() { error = std::current_exception(); }

  void take() const {
    if (error) std::rethrow_exception(error);
  }
};

/// Work that starts when it is awaited and gives one value or throws. Moved, never copied. It runs
/// on the executor, with the dependency values and under the stop token of whoever awaits it.
template <class T = void>
class [[nodiscard]] Task {
 public:
  struct promise_type;
  using Handle = std::coroutine_handle<promise_type>;

  struct AtEnd {
    bool await_ready() noexcept { return false; }
    void await_suspend(Handle ended) noexcept { ended.promise().finish(); }
    void await_resume() noexcept {}
  };

  struct promise_type : ReturningPromise<T> {
    Task get_return_object() {
      this->handle = Handle::from_promise(*this);
      return Task(Handle::from_promise(*this));
    }
    std::suspend_always initial_suspend() noexcept { return {}; }
    AtEnd final_suspend() noexcept { return {}; }
  };

  struct Awaiter {
    Handle child;
    bool await_ready() { return false; }
    template <class Parent>
    void await_suspend(std::coroutine_handle<Parent> parent) {
      child.promise().environment = parent.promise().environment;
      child.promise().continuation = &parent.promise();
      child.promise().resumeNext();
    }
    T await_resume() { return child.promise().take(); }
  };

  Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Task& operator=(Task&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Task() {
    if (handle_) handle_.destroy();
  }

  Awaiter operator co_await() && { return {handle_}; }

  /// For awaiters that start a task in another environment.
  promise_type& promise() { return handle_.promise(); }

 private:
  explicit Task(Handle handle) : handle_(handle) {}

  Handle handle_;
};

/// Awaits a task in an environment that `change` made of the awaiting one's.
template <class T, class Change>
struct InChangedEnvironment {
  Task<T> task;
  Change change;
  Environment environment = {};

  bool await_ready() { return false; }
  template <class Parent>
  void await_suspend(std::coroutine_handle<Parent> parent) {
    environment = *parent.promise().environment;
    change(environment);
    auto& child = task.promise();
    child.environment = &environment;
    child.continuation = &parent.promise();
    child.hopsBack = environment.executor != parent.promise().environment->executor;
    if (child.hopsBack) {
      child.post();
    } else {
      child.resumeNext();
    }
  }
  T await_resume() { return task.promise().take(); }
};

/// Runs `task` on `executor` and comes back.
template <class T>
Task<T> on(Executor& executor, Task<T> task) {
  auto change = [&executor](Environment& environment) { environment.executor = &executor; };
  co_return co_await InChangedEnvironment<T, decltype(change)>{std::move(task), change};
}

/// Runs `task` with `values` in force.
template <class T>
Task<T> withDependencies(DependencyValues values, Task<T> task) {
  auto change = [&values](Environment& environment) { environment.dependencies = values; };
  co_return co_await InChangedEnvironment<T, decltype(change)>{std::move(task), change};
}

/// Runs `task` so that it stops when either `token` or the awaiting work is told to.
template <class T>
Task<T> withStop(std::stop_token token, Task<T> task) {
  std::stop_source either;
  auto stop = [&either] { either.request_stop(); };
  std::stop_callback const ours(token, stop);
  std::stop_callback const outer(Environment::current()->stopToken, stop);
  auto change = [&either](Environment& environment) { environment.stopToken = either.get_token(); };
  co_return co_await InChangedEnvironment<T, decltype(change)>{std::move(task), change};
}

/// The outcome of `task` as a value, since nothing can be awaited in a `catch`.
template <class T>
Task<Result<T>> attempt(Task<T> task) {
  try {
    if constexpr (std::is_void_v<T>) {
      co_await std::move(task);
      co_return Result<void>();
    } else {
      co_return Result<T>(co_await std::move(task));
    }
  } catch (...) {
    co_return Result<T>(std::current_exception());
  }
}

}  // namespace vek
