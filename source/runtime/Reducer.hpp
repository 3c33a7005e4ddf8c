// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <functional>
#include <tuple>
#include <utility>

#include "runtime/Effect.hpp"
#include "runtime/Paths.hpp"

namespace vek {

/// The logic of a feature: one pure step that changes the state in place and returns an effect.
template <class R>
concept Reducer =
    requires(R const& reducer, typename R::State& state, typename R::Action const& action) {
      { reducer.reduce(state, action) } -> std::same_as<Effect<typename R::Action>>;
    };

/// A reducer made of a closure.
template <class State_, class Action_>
struct Reduce {
  using State = State_;
  using Action = Action_;
  std::function<Effect<Action>(State&, Action const&)> reduceClosure;

  Effect<Action> reduce(State& state, Action const& action) const {
    return reduceClosure(state, action);
  }
};

/// Reducers that all see each action, in their order; their effects are merged in the same order.
template <class First, class... Rest>
struct Reducers {
  using State = typename First::State;
  using Action = typename First::Action;
  std::tuple<First, Rest...> all;

  explicit Reducers(First first, Rest... rest) : all(std::move(first), std::move(rest)...) {}

  Effect<Action> reduce(State& state, Action const& action) const {
    return std::apply(
        [&](auto const&... each) {
          auto effect = Effect<Action>::none();
          ((effect = Effect<Action>::merge(std::move(effect), each.reduce(state, action))), ...);
          return effect;
        },
        all);
  }
};

/// Runs a child reducer on a field that is always present, for the actions of one case.
template <class ToChildState, class ToChildAction, Reducer Child>
struct Scope {
  using State = typename ToChildState::Root;
  using Action = typename ToChildAction::Parent;
  Child child;

  Effect<Action> reduce(State& state, Action const& action) const {
    auto const* childAction = ToChildAction::extract(action);
    if (!childAction) return Effect<Action>::none();
    return child.reduce(ToChildState::get(state), *childAction)
        .template map<Action>(
            [](typename ToChildAction::Value const& each) { return ToChildAction::embed(each); });
  }
};

}  // namespace vek
