// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <source_location>
#include <utility>
#include <variant>

#include "runtime/CancellablesCollection.hpp"
#include "runtime/EffectPublishers.hpp"
#include "runtime/EffectRuns.hpp"
#include "runtime/Publisher.hpp"

namespace vek {

/// A description of asynchronous work that a reducer returns: nothing, a stream of actions, or a
/// task of its own that sends actions. A value; nothing happens until a store acts on it.
template <class Action>
class Effect {
 public:
  struct None {};
  using Operation = std::variant<Publisher<Action>, RunEffect<Action>, None>;

  explicit Effect(Operation which) : operation(std::move(which)) {}

  static Effect none() { return Effect(None{}); }

  /// Sends `action` behind what is already buffered, within the same drain.
  static Effect send(Action action) { return Effect(Publisher<Action>::just(std::move(action))); }

  static Effect publisher(Publisher<Action> publisher) { return Effect(std::move(publisher)); }

  /// Runs `operation` on a task of its own, on the main executor, with the dependency values of
  /// this moment. Errors other than a cancellation go to `handler`; without one they are reported.
  static Effect run(typename RunEffect<Action>::Body operation,
                    typename RunEffect<Action>::Catch handler = nullptr,
                    std::source_location location = std::source_location::current()) {
    return run(std::nullopt, std::move(operation), std::move(handler), location);
  }

  /// The same with a priority.
  static Effect run(std::optional<TaskPriority> priority,
                    typename RunEffect<Action>::Body operation,
                    typename RunEffect<Action>::Catch handler = nullptr,
                    std::source_location location = std::source_location::current()) {
    if (handler) {
      operation = [operation = std::move(operation), handler = std::move(handler)](
                      Send<Action> send) { return runCatching(operation, handler, send); };
    }
    return Effect(
        RunEffect<Action>{priority, DependencyValues::current(), location, std::move(operation)});
  }

  /// Both at once.
  static Effect merge(Effect first, Effect second) {
    return combine(std::move(first), std::move(second), mergedRuns<Action>,
                   mergedPublishers<Action>);
  }

  /// The second after the first has ended.
  static Effect concatenate(Effect first, Effect second) {
    return combine(std::move(first), std::move(second), concatenatedRuns<Action>,
                   concatenatedPublishers<Action>);
  }

  /// The same work, each action of it made into another.
  template <class Other, class Transform>
  Effect<Other> map(Transform transform) && {
    if (auto* publisher = std::get_if<Publisher<Action>>(&operation)) {
      return Effect<Other>::publisher(publisher->template map<Other>(transform));
    }
    if (auto* run = std::get_if<RunEffect<Action>>(&operation)) {
      return Effect<Other>(std::move(*run).template map<Other>(transform));
    }
    return Effect<Other>::none();
  }

  /// The same work, stopped by `Effect::cancel(id)`. With `CancelInFlight::yes` it first stops what
  /// runs under the id.
  Effect cancellable(AnyHashable id, CancelInFlight cancelInFlight = CancelInFlight::no) && {
    auto cancelID = _CancelID(std::move(id), *DependencyValues::current()[navigationIDPath]);
    if (auto* publisher = std::get_if<Publisher<Action>>(&operation)) {
      // One that is over as soon as it is subscribed to cannot be stopped.
      if (publisher->justValue() && cancelInFlight == CancelInFlight::no) return std::move(*this);
      return Effect(
          cancellablePublisher(std::move(*publisher), std::move(cancelID), cancelInFlight));
    }
    if (auto* run = std::get_if<RunEffect<Action>>(&operation)) {
      return Effect(cancellableRun(std::move(*run), std::move(cancelID), cancelInFlight));
    }
    return none();
  }

  /// Stops what runs under `id`, in the drain in which this effect is returned.
  static Effect cancel(AnyHashable id) {
    return cancel(_CancelID(std::move(id), *DependencyValues::current()[navigationIDPath]));
  }

  static Effect cancel(_CancelID id) {
    return publisher(Publisher<Action>([id = std::move(id)](Subscriber<Action> subscriber) {
      CancellablesCollection::shared().cancel(id);
      subscriber.onCompletion();
      return Subscription();
    }));
  }

  Operation operation;

 private:
  static Publisher<Action> asPublisher(Operation operation) {
    if (auto* run = std::get_if<RunEffect<Action>>(&operation)) {
      return _EffectPublisher(std::move(*run));
    }
    return std::get<Publisher<Action>>(std::move(operation));
  }

  template <class Runs, class Publishers>
  static Effect combine(Effect first, Effect second, Runs runs, Publishers publishers) {
    if (std::holds_alternative<None>(first.operation)) return second;
    if (std::holds_alternative<None>(second.operation)) return first;
    auto* const firstRun = std::get_if<RunEffect<Action>>(&first.operation);
    auto* const secondRun = std::get_if<RunEffect<Action>>(&second.operation);
    if (firstRun && secondRun) return Effect(runs(std::move(*firstRun), std::move(*secondRun)));
    return Effect(publishers(asPublisher(std::move(first.operation)),
                             asPublisher(std::move(second.operation))));
  }
};

}  // namespace vek
