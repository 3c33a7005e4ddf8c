// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <typeindex>
#include <unordered_map>
#include <utility>

#include "runtime/IdentifiedAction.hpp"
#include "runtime/Reducer.hpp"
#include "runtime/RootStore.hpp"

namespace vek {

/// Which part of a store a scoped store shows: the paths of state and action, and the element's id
/// where it shows an element of a list.
struct ScopeID {
  std::type_index state;
  std::type_index action;
  std::optional<AnyHashable> element;
  bool operator==(ScopeID const&) const = default;
};

}  // namespace vek

template <>
struct std::hash<vek::ScopeID> {
  std::size_t operator()(vek::ScopeID const& id) const noexcept {
    return id.state.hash_code() * 31 + id.action.hash_code() +
           (id.element ? id.element->hash() : 0);
  }
};

namespace vek {

class AnyStore {
 public:
  AnyStore() = default;
  AnyStore(AnyStore const&) = delete;
  AnyStore& operator=(AnyStore const&) = delete;
  virtual ~AnyStore() = default;
};

/// The handle that views, controllers and programs hold: reads a part of the root's state, sends
/// the actions of that part. It has no state of its own. Main thread.
template <class State, class Action>
class Store final : public AnyStore, public std::enable_shared_from_this<Store<State, Action>> {
 public:
  using Shared = std::shared_ptr<Store>;

  /// Makes the root: `reducer` is a builder, run once with the dependencies of the moment.
  template <class Builder>
  static Shared make(State initialState, Builder reducer) {
    using R = std::invoke_result_t<Builder>;
    auto root = std::make_shared<RootStoreOf<State, Action, R>>(std::move(initialState), reducer());
    auto store = std::make_shared<Store>();
    store->toState = [raw = root.get()] { return &raw->state(); };
    store->fromAction = [raw = root.get()](Action action) { return raw->send(std::move(action)); };
    store->rootStore = std::move(root);
    return store;
  }

  StoreTask send(Action action) { return fromAction(std::move(action)); }

  [[nodiscard]] State const& state() const { return *toState(); }

  /// The store of a field; equal paths give the same object.
  template <class ToChildState, class ToChildAction>
  auto scope() {
    using Child = Store<typename ToChildState::Value, typename ToChildAction::Value>;
    return cached<Child>(scopeID<ToChildState, ToChildAction>(std::nullopt), [this] {
      auto child = std::make_shared<Child>();
      child->toState = [parent = toState] { return &ToChildState::get(*parent()); };
      child->fromAction = embedding<ToChildAction>();
      return child;
    });
  }

  /// The store of an element that is in the list now. It keeps the element's last value when the
  /// element goes; it is invalid then, and an element of the same identifier gets a new store.
  template <class ToElementsState, class ToElementAction>
  auto scope(typename ToElementAction::Value::ID const& id) {
    using Element = typename ToElementsState::Value::ElementType;
    using Child = Store<Element, typename ToElementAction::Value::ElementAction>;
    auto const key = scopeID<ToElementsState, ToElementAction>(AnyHashable(id));
    return cached<Child>(
        key, [&] { return makeElement<Child, ToElementsState, ToElementAction>(id, key); });
  }

  /// The state now and after each drain, equal values included.
  [[nodiscard]] Publisher<State> publisher() {
    return Publisher<State>([self = this->shared_from_this()](Subscriber<State> subscriber) {
      auto const emit = [self, on = std::make_shared<Subscriber<State>>(std::move(subscriber))] {
        on->onValue(self->state());
      };
      emit();
      return self->rootStore->didSet.subscribe(emit);
    });
  }

  /// A field now and whenever it has changed.
  template <class ToField>
  Publisher<typename ToField::Value> publisher() {
    using Field = typename ToField::Value;
    return Publisher<Field>([self = this->shared_from_this()](Subscriber<Field> subscriber) {
      auto const emit = [self, last = std::make_shared<std::optional<Field>>(),
                         on = std::make_shared<Subscriber<Field>>(std::move(subscriber))] {
        auto const& value = ToField::get(self->state());
        if (*last == value) return;
        *last = value;
        on->onValue(value);
      };
      emit();
      return self->rootStore->didSet.subscribe(emit);
    });
  }

  [[nodiscard]] bool isInvalidated() const { return _isInvalidated && _isInvalidated(); }

 private:
  template <class S, class A>
  friend class Store;

  template <class ToState, class ToAction>
  static ScopeID scopeID(std::optional<AnyHashable> element) {
    return {typeid(ToState), typeid(ToAction), std::move(element)};
  }

  template <class Child, class Make>
  std::shared_ptr<Child> cached(ScopeID const& id, Make make) {
    if (auto const found = children.find(id); canCacheChildren && found != children.end()) {
      return std::static_pointer_cast<Child>(found->second);
    }
    std::shared_ptr<Child> child = make();
    child->rootStore = rootStore;
    if (!child->_isInvalidated) child->_isInvalidated = _isInvalidated;
    if (canCacheChildren) children.insert_or_assign(id, child);
    return child;
  }

  template <class ToChildAction>
  auto embedding() const {
    return [parent = fromAction](typename ToChildAction::Value action) {
      return parent(ToChildAction::embed(std::move(action)));
    };
  }

  template <class Child, class ToElementsState, class ToElementAction>
  std::shared_ptr<Child> makeElement(typename ToElementAction::Value::ID const& id,
                                     ScopeID const& key) {
    using Identified = typename ToElementAction::Value;
    using Element = typename ToElementsState::Value::ElementType;
    struct Last {
      Element value;
      bool isGone = false;
    };
    auto child = std::make_shared<Child>();
    auto const last = std::make_shared<Last>(Last{*ToElementsState::get(state()).find(id)});
    child->toState = [last, id, parentState = toState]() -> Element const* {
      auto const* element = ToElementsState::get(*parentState()).find(id);
      return element && !last->isGone ? element : &last->value;
    };
    child->fromAction = [parent = fromAction, id](typename Identified::ElementAction action) {
      return parent(ToElementAction::embed(typename Identified::element{id, std::move(action)}));
    };
    child->_isInvalidated = [last] { return last->isGone; };
    child->parentCancellable = rootStore->didSet.subscribe(
        [last, id, key, parentState = toState, weak = this->weak_from_this()] {
          if (last->isGone) return;
          if (auto const* element = ToElementsState::get(*parentState()).find(id)) {
            if (!(last->value == *element)) last->value = *element;
          } else {
            last->isGone = true;
            if (auto const parent = weak.lock()) parent->children.erase(key);
          }
        });
    return child;
  }

  bool canCacheChildren = true;
  std::unordered_map<ScopeID, std::shared_ptr<AnyStore>> children;
  std::function<bool()> _isInvalidated;
  std::shared_ptr<RootStore> rootStore;
  std::function<State const*()> toState;
  std::function<StoreTask(Action)> fromAction;
  /// Follows the element that this store shows.
  Subscription parentCancellable;
};

}  // namespace vek
