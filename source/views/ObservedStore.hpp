// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "runtime/Store.hpp"

namespace vek {

/// A store as a view object holds it: reads the state, sends actions, and tells which part of the
/// state has changed. Main thread.
///
///     store_.notify<&State::isLoading>(this, &SessionStore::isLoadingChanged);
template <class State, class Action>
class ObservedStore {
 public:
  using Shared = typename Store<State, Action>::Shared;

  explicit ObservedStore(Shared store) : store_(std::move(store)) {}

  [[nodiscard]] State const& state() const { return store_->state(); }
  [[nodiscard]] Shared const& store() const { return store_; }
  void send(Action action) const { store_->send(std::move(action)); }

  /// Calls `signal` on `object` now and each time that `Part` of the state has changed: a field, or
  /// a function of the state. The object outlives this one.
  template <auto Part, class Object>
  void notify(Object* object, void (Object::*signal)()) {
    subscriptions_.push_back(store_->template publisher<PartOf<Part>>().subscribe(
        {[object, signal](auto const&) { (object->*signal)(); }, [] {}}));
  }

 private:
  template <auto Part>
  struct PartOf {
    using Value = std::remove_cvref_t<std::invoke_result_t<decltype(Part), State const&>>;
    static decltype(auto) get(State const& state) { return std::invoke(Part, state); }
  };

  Shared store_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace vek
