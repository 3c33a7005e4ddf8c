// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <stop_token>

#include "runtime/DependencyValues.hpp"
#include "runtime/Executor.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// Work that was started. Copies stand for the same work; dropping them does not stop it.
class TaskHandle {
 public:
  TaskHandle() = default;

  /// Tells the work to stop. What it awaits ends with a `CancellationError`.
  void cancel() const;

  /// Ends when the work has ended. Telling the awaiting work to stop does not end the wait.
  [[nodiscard]] Task<> wait() const;

  [[nodiscard]] bool isDone() const;
  explicit operator bool() const { return state_ != nullptr; }

 private:
  friend TaskHandle spawn(Executor& executor, Task<> task, DependencyValues dependencies);
  struct State;
  struct Detached;

  static Detached run(Task<> task, std::shared_ptr<State> state);

  std::shared_ptr<State> state_;
};

/// Starts `task` on `executor`, later, with a stop token of its own and with `dependencies`. An
/// error that it ends with is reported; a cancellation is not.
TaskHandle spawn(Executor& executor, Task<> task,
                 DependencyValues dependencies = DependencyValues::current());

}  // namespace vek
