// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "runtime/Store.hpp"
#include "support/RunMainQueue.hpp"

namespace vek::test {

/// A reducer that writes the letter of each action down and returns the effect that the script
/// has for it.
struct Scripted {
  struct State {
    std::string text;
    bool operator==(State const&) const = default;
  };
  struct Action {
    struct letter {
      char which;
    };
    Action(char which) : value(letter{which}) {}
    [[nodiscard]] char which() const { return std::get<letter>(value).which; }
    std::variant<letter> value;
  };
  using Script = std::map<char, std::function<Effect<Action>()>>;
  Script script;

  Effect<Action> reduce(State& state, Action const& action) const {
    state.text += action.which();
    auto const found = script.find(action.which());
    return found == script.end() ? Effect<Action>::none() : found->second();
  }
};

using Letters = Effect<Scripted::Action>;
using ScriptedStore = RootStoreOf<Scripted::State, Scripted::Action, Scripted>;

inline std::shared_ptr<ScriptedStore> scripted(Scripted::Script script) {
  return std::make_shared<ScriptedStore>(Scripted::State(), Scripted{std::move(script)});
}

enum class Kind { publisher, run, none };

/// An effect whose values and end are in the hands of the test.
struct Probe {
  explicit Probe(Kind which) : kind(which) {}

  Kind kind;
  std::function<void(char)> emit = [](char) {};
  std::function<void()> end = [] {};
  bool started = false;
  bool ended = false;
  bool stopped = false;

  [[nodiscard]] bool isRunning() const { return started && !ended && !stopped; }

  Letters effect() {
    if (kind == Kind::none) return Letters::none();
    if (kind == Kind::publisher) return Letters::publisher(publisher());
    return Letters::run([this](Send<Scripted::Action> send) -> Task<> {
      started = true;
      emit = [send](char letter) { send(letter); };
      co_await callbackOperation<bool>(
          [this](Completion<bool> done) { end = [done] { done.resolve(true); }; },
          [this] { stopped = true; });
      ended = true;
    });
  }

  Publisher<Scripted::Action> publisher() {
    return Publisher<Scripted::Action>([this](Subscriber<Scripted::Action> subscriber) {
      started = true;
      auto const shared = std::make_shared<Subscriber<Scripted::Action>>(std::move(subscriber));
      emit = [shared](char letter) { shared->onValue(letter); };
      end = [this, shared] {
        ended = true;
        shared->onCompletion();
      };
      return Subscription([this] { stopped = !ended; });
    });
  }
};

inline bool isDone(StoreTask const& task) {
  runMainQueue();
  return !task || task.tasks()->isDone();
}

}  // namespace vek::test
