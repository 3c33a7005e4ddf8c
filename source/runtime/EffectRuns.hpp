// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <source_location>
#include <string>
#include <utility>
#include <vector>

#include "runtime/CancellablesCollection.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/Report.hpp"
#include "runtime/Send.hpp"
#include "runtime/WhenAll.hpp"

namespace vek {

enum class TaskPriority : std::uint8_t { background, utility, medium, userInitiated };

enum class CancelInFlight : bool { no, yes };

/// The work of a run effect.
template <class Action>
struct RunEffect {
  using Body = std::function<Task<>(Send<Action>)>;
  using Catch = std::function<Task<>(ErrorObject, Send<Action>)>;

  /// A hint; the main executor runs all in the order in which they come.
  std::optional<TaskPriority> priority;
  /// Those in force when the effect was made.
  DependencyValues dependencies;
  /// Where it was made, for reports.
  std::source_location location;
  /// Its task refers to what it captured: who calls it keeps it until the task has ended.
  Body operation;

  template <class Other, class Transform>
  RunEffect<Other> map(Transform transform) && {
    return {priority, std::move(dependencies), location,
            [operation = std::move(operation), transform](Send<Other> send) {
              return operation(send.template pullback<Action>(transform));
            }};
  }
};

/// "folder/File.cpp:12"
std::string describe(std::source_location const& location);

/// Reports an error that no handler took, unless it is a cancellation.
void reportUnhandledError(std::source_location const& location, std::exception_ptr const& error);

template <class Action>
Task<> runCatching(typename RunEffect<Action>::Body const& operation,
                   typename RunEffect<Action>::Catch const& handler, Send<Action> send) {
  std::exception_ptr error;
  try {
    co_await operation(send);
  } catch (...) {
    error = std::current_exception();
  }
  if (!error || isCancellation(error)) co_return;
  co_await handler(ErrorObject(error), std::move(send));
}

/// Runs the work to its end; it never throws.
template <class Action>
Task<> perform(RunEffect<Action> const& run, Send<Action> send) {
  try {
    co_await run.operation(std::move(send));
  } catch (...) {
    reportUnhandledError(run.location, std::current_exception());
  }
}

/// The same with the values in force at its making, as a part of other work.
template <class Action>
Task<> runInItsScope(RunEffect<Action> const& run, Send<Action> send) {
  return withDependencies(run.dependencies, perform(run, std::move(send)));
}

template <class Action>
RunEffect<Action> mergedRuns(RunEffect<Action> first, RunEffect<Action> second) {
  auto const location = first.location;
  return {std::nullopt, DependencyValues::current(), location,
          [first = std::move(first), second = std::move(second)](Send<Action> send) {
            std::vector<Task<>> both;
            both.push_back(runInItsScope(first, send));
            both.push_back(runInItsScope(second, send));
            return whenAll(std::move(both));
          }};
}

template <class Action>
Task<> runInSequence(RunEffect<Action> const& first, RunEffect<Action> const& second,
                     Send<Action> send) {
  co_await runInItsScope(first, send);
  if (Environment::isCancelled()) co_return;
  co_await runInItsScope(second, std::move(send));
}

template <class Action>
RunEffect<Action> concatenatedRuns(RunEffect<Action> first, RunEffect<Action> second) {
  auto const location = first.location;
  return {std::nullopt, DependencyValues::current(), location,
          [first = std::move(first), second = std::move(second)](Send<Action> send) {
            return runInSequence(first, second, std::move(send));
          }};
}

/// Runs `operation` so that cancelling `id` stops it.
template <class Action>
Task<> withTaskCancellation(_CancelID const& id, CancelInFlight cancelInFlight,
                            typename RunEffect<Action>::Body const& operation, Send<Action> send) {
  auto& cancellables = CancellablesCollection::shared();
  if (cancelInFlight == CancelInFlight::yes) cancellables.cancel(id);
  std::stop_source source;
  auto stop = [&source] { source.request_stop(); };
  std::stop_callback const outer(Environment::current()->stopToken, stop);
  auto stoppable = [&source](Environment& environment) {
    environment.stopToken = source.get_token();
  };
  struct Entry {
    _CancelID const& id;
    CancellablesCollection::Key key;
    ~Entry() { CancellablesCollection::shared().remove(id, key); }
  };
  Entry const entry{id, cancellables.insert(id, [source]() mutable { source.request_stop(); })};
  co_await InChangedEnvironment<void, decltype(stoppable)>{operation(std::move(send)), stoppable};
}

template <class Action>
RunEffect<Action> cancellableRun(RunEffect<Action> run, _CancelID id,
                                 CancelInFlight cancelInFlight) {
  return {run.priority, std::move(run.dependencies), run.location,
          [id = std::move(id), cancelInFlight,
           operation = std::move(run.operation)](Send<Action> send) {
            return withTaskCancellation<Action>(id, cancelInFlight, operation, std::move(send));
          }};
}

}  // namespace vek
