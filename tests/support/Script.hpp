// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <memory>
#include <variant>

#include "runtime/Describe.hpp"
#include "runtime/Effect.hpp"

namespace vek::test {

/// What stands in for a feature below a view: the state that a test wants next, which the action
/// `Change` puts in place, and what else was sent, oldest first.
template <class State, class Action, class Change>
struct Script {
  State next;
  QStringList sent;

  struct Reducer {
    std::shared_ptr<Script> script;

    Effect<Action> reduce(State& state, Action const& action) const {
      if (std::holds_alternative<Change>(action.value)) {
        state = script->next;
      } else {
        script->sent.append(QString::fromStdString(describe(action)));
      }
      return Effect<Action>::none();
    }
  };
};

}  // namespace vek::test
