// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

#include "runtime/Environment.hpp"

namespace vek {

/// With this a run effect delivers actions to the store. On the main thread the action is reduced
/// before the call returns; from another thread it is posted, in order. What a cancelled task sends
/// is dropped.
template <class Action>
class Send {
 public:
  /// `deliver(action, token)` delivers the action unless the token says, at delivery, that its
  /// sender was cancelled.
  template <class Deliver>
    requires std::is_invocable_v<Deliver const&, Action, std::stop_token>
  explicit Send(Deliver deliver)
      : closure_(std::make_shared<ClosureOf<Deliver> const>(std::move(deliver))) {}

  void operator()(Action action) const {
    auto const* environment = Environment::current();
    closure_->deliver(std::move(action), environment ? environment->stopToken : std::stop_token());
  }

  /// A send of other actions, each made into one of these.
  template <class Other, class Transform>
  Send<Other> pullback(Transform transform) const {
    return Send<Other>([closure = closure_, transform](Other action, std::stop_token token) {
      closure->deliver(transform(std::move(action)), std::move(token));
    });
  }

 private:
  /// Shared by all copies.
  struct Closure {
    virtual ~Closure() = default;
    virtual void deliver(Action action, std::stop_token token) const = 0;
  };
  template <class Deliver>
  struct ClosureOf final : Closure {
    explicit ClosureOf(Deliver function) : closure(std::move(function)) {}
    void deliver(Action action, std::stop_token token) const override {
      closure(std::move(action), std::move(token));
    }
    Deliver closure;
  };

  std::shared_ptr<Closure const> closure_;
};

}  // namespace vek
