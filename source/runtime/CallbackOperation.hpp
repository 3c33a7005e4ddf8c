// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <coroutine>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

#include "runtime/Task.hpp"

namespace vek {

/// Ends a callback operation. May be copied, kept and called on any thread; the first call wins.
template <class T>
class Completion {
 public:
  /// Both return whether this call was the first; a value that came too late is left as it was.
  bool resolve(T&& value) const {
    return state_->settle([&value] { return Result<T>(std::move(value)); });
  }
  bool reject(std::exception_ptr error) const {
    return state_->settle([&error] { return Result<T>(std::move(error)); });
  }

 private:
  template <class U, class Start, class OnCancel>
  friend struct CallbackAwaiter;

  struct State {
    explicit State(PromiseBase& promise) : waiter(&promise) {}

    template <class MakeOutcome>
    bool settle(MakeOutcome makeOutcome) {
      if (isClaimed.exchange(true)) return false;
      outcome.emplace(makeOutcome());
      if (phase.exchange(Phase::settled) == Phase::suspended) waiter->post();
      return true;
    }

    /// False when the outcome is there already and the waiter goes on at once.
    bool suspend() {
      auto expected = Phase::running;
      return phase.compare_exchange_strong(expected, Phase::suspended);
    }

    enum class Phase : std::uint8_t { running, suspended, settled };

    std::optional<Result<T>> outcome;
    PromiseBase* waiter;
    std::atomic<bool> isClaimed = false;
    std::atomic<Phase> phase = Phase::running;
  };

  explicit Completion(std::shared_ptr<State> state) : state_(std::move(state)) {}

  std::shared_ptr<State> state_;
};

template <class T, class Start, class OnCancel>
struct CallbackAwaiter {
  Start start;
  OnCancel onCancel;

  struct Stop {
    std::shared_ptr<typename Completion<T>::State> state;
    OnCancel* onCancel;
    void operator()() const {
      auto cancelled = [] { return Result<T>(std::make_exception_ptr(CancellationError())); };
      if (state->settle(cancelled)) (*onCancel)();
    }
  };

  std::shared_ptr<typename Completion<T>::State> state = nullptr;
  std::optional<std::stop_callback<Stop>> stop = std::nullopt;

  bool await_ready() { return false; }

  template <class Parent>
  bool await_suspend(std::coroutine_handle<Parent> parent) {
    // Once suspended, another thread may end this awaiter: what is needed after is held here.
    auto const own = std::make_shared<typename Completion<T>::State>(parent.promise());
    state = own;
    start(Completion<T>(own));
    stop.emplace(parent.promise().environment->stopToken, Stop{own, &onCancel});
    return own->suspend();
  }

  T await_resume() {
    stop.reset();
    return std::move(*state->outcome).value();
  }
};

/// Awaits something that answers by callback. `start` gets a `Completion<T>` and begins the work;
/// when the awaiting work is told to stop first, it gets a `CancellationError` and `onCancel` runs,
/// on the thread that told it.
template <class T, class Start, class OnCancel>
auto callbackOperation(Start start, OnCancel onCancel) {
  return CallbackAwaiter<T, Start, OnCancel>{std::move(start), std::move(onCancel)};
}

template <class T, class Start>
auto callbackOperation(Start start) {
  return callbackOperation<T>(std::move(start), [] {});
}

}  // namespace vek
