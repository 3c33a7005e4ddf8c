// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <source_location>
#include <string>
#include <utility>
#include <vector>

#include "runtime/Store.hpp"
#include "support/RunMainQueue.hpp"

namespace vek::test {

/// An action with where it came from: the test, or an effect.
template <class Action>
struct TestAction {
  Action action;
  bool isFromEffect = false;
};

template <class Action>
std::string describe(TestAction<Action> const& each) {
  return vek::describe(each.action);
}

/// Runs a feature in a store and has the test account for everything that it does:
///
///     TestStore<RecordingFeature> store({}, [](DependencyValues& values) {
///       values.set(apiClient, ...);
///     });
///     store.send(Action::recordButtonClicked{}, [](State& state) { state.isLoading = true; });
///     store.receive(Action::recordStarted{}, [](State& state) { state.isLoading = false; });
///
/// `send` and `receive` compare the whole state after the one action with the state before it as
/// the closure changed it; without a closure the action changes nothing. At the end of the test no
/// action may be left that was not received, and no effect running. For the main thread.
template <class Feature>
class TestStore {
 public:
  using State = typename Feature::State;
  using Action = typename Feature::Action;
  using Change = std::function<void(State&)>;
  using Location = std::source_location;

  TestStore(State initialState, Feature feature, Location location = Location::current())
      : made_(location), state_(initialState) {
    store_ = Store<State, TestAction<Action>>::make(
        std::move(initialState), [&] { return Recorder{std::move(feature), record_}; });
  }

  /// Builds the feature with the dependencies as `update` changed them.
  template <class Update>
    requires std::is_invocable_v<Update, DependencyValues&>
  TestStore(State initialState, Update update, Location location = Location::current())
      : TestStore(std::move(initialState), withDependencies(update, [] { return Feature(); }),
                  location) {}

  TestStore(TestStore const&) = delete;
  TestStore& operator=(TestStore const&) = delete;
  ~TestStore() {
    finish(made_);
    for (auto const& effects : effects_) effects.task.cancel();
    runMainQueue();
  }

  /// The state as the test knows it: after the last action that it sent or received.
  [[nodiscard]] State const& state() const { return state_; }

  /// How long `receive` and `finish` wait for effects; 5 s unless set.
  void waitAtMost(std::chrono::milliseconds limit) { limit_ = limit; }

  /// Sends an action as a view would. The task awaits or cancels the effects that it starts.
  StoreTask send(Action action, Change change = nullptr, Location location = Location::current()) {
    expectNothingToReceive("before \"" + vek::describe(action) + "\" is sent", location);
    auto const name = vek::describe(action);
    auto const task = store_->send({std::move(action)});
    effects_.push_back({name, task});
    advance(std::move(*record_->afterSent), change, "\"" + name + "\" was sent", location);
    return task;
  }

  /// Waits for the next action that comes from an effect.
  void receive(Action const& expected, Change change = nullptr,
               Location location = Location::current()) {
    auto next = nextReceived(vek::describe(expected), location);
    if (!next) return;
    auto const name = vek::describe(next->action);
    if (next->action == expected) {
      return advance(std::move(next->after), change, "\"" + name + "\" was received", location);
    }
    auto const wanted = vek::describe(expected);
    fail(location, name == wanted ? "The received \"" + name + "\" has other values."
                                  : "Received \"" + name + "\" instead of \"" + wanted + "\".");
    state_ = std::move(next->after);
  }

  /// The same for an action whose values cannot be made beforehand, such as errors: takes any
  /// action of the case and hands it to `change`.
  template <class Case>
  void receive(std::function<void(State&, Case const&)> change,
               Location location = Location::current()) {
    auto const wanted = std::string(vek::detail::typeName<Case>());
    auto next = nextReceived(wanted, location);
    if (!next) return;
    auto const name = vek::describe(next->action);
    if (auto const* found = std::get_if<Case>(&next->action.value)) {
      return advance(
          std::move(next->after), [&](State& state) { change(state, *found); },
          "\"" + name + "\" was received", location);
    }
    fail(location, "Received \"" + name + "\" instead of \"" + wanted + "\".");
    state_ = std::move(next->after);
  }

  /// Waits for the effects to end and expects that no action is left.
  void finish(Location location = Location::current()) {
    if (isOver_) return;
    runMainQueueUntil([this] { return !record_->received.empty() || areEffectsDone(); }, limit_);
    expectNothingToReceive("at the end", location);
    for (auto const& effects : effects_) {
      if (!isDone(effects)) {
        fail(location, "An effect that \"" + effects.action + "\" started is still running.");
      }
    }
  }

 private:
  struct Received {
    Action action;
    State after;
  };

  /// What the reducer saw, action by action.
  struct Record {
    std::optional<State> afterSent;
    std::deque<Received> received;
  };

  struct Recorder {
    using State = TestStore::State;
    using Action = TestAction<TestStore::Action>;
    Feature feature;
    std::shared_ptr<Record> record;

    Effect<Action> reduce(State& state, Action const& each) const {
      auto effect = feature.reduce(state, each.action);
      if (each.isFromEffect) {
        record->received.push_back({each.action, state});
      } else {
        record->afterSent = state;
      }
      return std::move(effect).template map<Action>(
          [](TestStore::Action const& action) { return Action{action, true}; });
    }
  };

  struct Effects {
    std::string action;
    StoreTask task;
  };

  static bool isDone(Effects const& effects) {
    return !effects.task || effects.task.tasks()->isDone();
  }
  [[nodiscard]] bool areEffectsDone() const {
    return std::all_of(effects_.begin(), effects_.end(), isDone);
  }

  void fail(Location const& location, std::string const& message) {
    isOver_ = true;
    ADD_FAILURE_AT(location.file_name(), static_cast<int>(location.line())) << message;
  }

  void expectNothingToReceive(std::string const& when, Location const& location) {
    while (!record_->received.empty()) {
      auto const& left = record_->received.front();
      fail(location, "\"" + vek::describe(left.action) + "\" was not received " + when + ".");
      state_ = left.after;
      record_->received.pop_front();
    }
  }

  std::optional<Received> nextReceived(std::string const& wanted, Location const& location) {
    auto& received = record_->received;
    runMainQueueUntil([&] { return !received.empty() || areEffectsDone(); }, limit_);
    if (received.empty()) {
      fail(location, "No effect sent \"" + wanted + "\"" +
                         (areEffectsDone() ? "; all have ended." : " in time."));
      return std::nullopt;
    }
    auto next = std::move(received.front());
    received.pop_front();
    return next;
  }

  void advance(State after, Change const& change, std::string const& what,
               Location const& location) {
    auto expected = state_;
    if (change) change(expected);
    if (!(after == expected)) {
      fail(location, what + (after == state_ ? " and the state did not change."
                             : change        ? " and the state is not the expected one."
                                             : " and the state changed."));
    }
    state_ = std::move(after);
  }

  Location made_;
  State state_;
  std::shared_ptr<Record> record_ = std::make_shared<Record>();
  std::shared_ptr<Store<State, TestAction<Action>>> store_;
  std::vector<Effects> effects_;
  std::chrono::milliseconds limit_ = std::chrono::seconds(5);
  /// A first failure makes those that follow from it meaningless.
  bool isOver_ = false;
};

}  // namespace vek::test
