// SPDX-License-Identifier: MIT
#include "runtime/TaskHandle.hpp"

#include <atomic>
#include <coroutine>
#include <mutex>
#include <string>
#include <vector>

#include "runtime/CallbackOperation.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/Report.hpp"
#include "runtime/Uncancelled.hpp"

namespace vek {

struct TaskHandle::State {
  std::stop_source stopSource;
  std::atomic<bool> isDone = false;
  std::vector<Completion<bool>> waiting;
  /// Guards `waiting` of all tasks: it is held for a moment only, and tasks are many.
  static inline std::mutex mutex;

  void end() {
    std::vector<Completion<bool>> waiters;
    {
      std::lock_guard lock(mutex);
      isDone = true;
      waiters.swap(waiting);
    }
    for (auto const& waiter : waiters) waiter.resolve(true);
  }
};

/// A coroutine that nobody awaits; it releases itself at its end.
struct TaskHandle::Detached {
  struct promise_type : PromiseBase {
    Environment own;

    Detached get_return_object() {
      handle = std::coroutine_handle<promise_type>::from_promise(*this);
      return {this};
    }
    std::suspend_always initial_suspend() noexcept { return {}; }
    std::suspend_never final_suspend() noexcept { return {}; }
    void return_void() {}
    void unhandled_exception() { std::terminate(); }
  };
  promise_type* promise;
};

TaskHandle::Detached TaskHandle::run(Task<> task, std::shared_ptr<State> state) {
  try {
    // Held here, so that it is released in its own environment and before its end is told.
    auto work = std::move(task);
    co_await std::move(work);
  } catch (CancellationError const&) {
  } catch (...) {
    report("A task ended with an error that nobody handles: " +
           ErrorObject(std::current_exception()).localizedDescription());
  }
  state->end();
}

TaskHandle spawn(Executor& executor, Task<> task, DependencyValues dependencies) {
  TaskHandle handle;
  handle.state_ = std::make_shared<TaskHandle::State>();
  auto* const promise = TaskHandle::run(std::move(task), handle.state_).promise;
  promise->own = {&executor, std::move(dependencies), handle.state_->stopSource.get_token()};
  promise->environment = &promise->own;
  promise->post();
  return handle;
}

void TaskHandle::cancel() const {
  // Held: what is stopped may let go of this handle.
  if (auto const state = state_) state->stopSource.request_stop();
}

bool TaskHandle::isDone() const {
  return !state_ || state_->isDone;
}

Task<> TaskHandle::wait() const {
  if (!state_) co_return;
  auto const state = state_;
  co_await uncancelled<bool>([state](Completion<bool> ended) {
    std::unique_lock lock(State::mutex);
    if (!state->isDone) return state->waiting.push_back(std::move(ended));
    lock.unlock();
    ended.resolve(true);
  });
}

}  // namespace vek
