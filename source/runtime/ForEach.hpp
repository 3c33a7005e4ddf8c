// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <source_location>
#include <string>
#include <utility>

#include "runtime/Dependency.hpp"
#include "runtime/Describe.hpp"
#include "runtime/IdentifiedAction.hpp"
#include "runtime/IdentifiedArray.hpp"
#include "runtime/Reducer.hpp"

namespace vek {

/// All effects of an element stand under this id, with the element's own path.
enum class EffectOfElement : bool { any };

/// An element of one list; those of other lists differ from it, whatever their identifier.
template <class ToElementsState, class ID>
struct ElementID {
  ID id;
  bool operator==(ElementID const&) const = default;
};

}  // namespace vek

template <class ToElementsState, class ID>
struct std::hash<vek::ElementID<ToElementsState, ID>> {
  std::size_t operator()(vek::ElementID<ToElementsState, ID> const& element) const noexcept {
    return std::hash<ID>()(element.id);
  }
};

namespace vek {

void reportMissingElement(std::source_location const& location, std::string const& action);

/// Runs `element` on the element that an action names, then `parent` on the whole, and stops the
/// effects of elements that are gone. Made by `forEach`.
template <Reducer Parent, class ToElementsState, class ToElementAction, Reducer Element>
struct _ForEachReducer {
  using State = typename Parent::State;
  using Action = typename Parent::Action;
  using ElementAction = typename Element::Action;
  using ID = typename ToElementAction::Value::ID;

  Parent parent;
  Element element;
  std::source_location location;
  Dependency<NavigationIDPathKey> navigationIDPath{vek::navigationIDPath};

  Effect<Action> reduce(State& state, Action const& action) const {
    auto effect = reduceElement(state, action);
    auto const before = ToElementsState::get(state).ids();
    effect = Effect<Action>::merge(std::move(effect), parent.reduce(state, action));
    auto const after = ToElementsState::get(state).ids();
    if (before == after) return effect;
    before.forEach([&](ID const& id) {
      if (!after.contains(id)) {
        effect = Effect<Action>::merge(
            std::move(effect), Effect<Action>::cancel(_CancelID(EffectOfElement::any, path(id))));
      }
    });
    return effect;
  }

 private:
  [[nodiscard]] NavigationIDPath path(ID const& id) const {
    return navigationIDPath->appending(ElementID<ToElementsState, ID>{id});
  }

  Effect<Action> reduceElement(State& state, Action const& action) const {
    auto const* identified = ToElementAction::extract(action);
    if (!identified) return Effect<Action>::none();
    auto const& [id, elementAction] = std::get<0>(identified->value);
    auto effect = Effect<ElementAction>::none();
    auto const reduceAt = [&](auto& elementState) {
      effect = element.reduce(elementState, elementAction);
    };
    return withDependencies(
        [&](DependencyValues& values) { values.set(vek::navigationIDPath, path(id)); },
        [&] {
          if (!ToElementsState::get(state).update(id, reduceAt)) {
            reportMissingElement(location, describe(elementAction));
            return Effect<Action>::none();
          }
          return std::move(effect)
              .template map<Action>([id](ElementAction const& each) {
                return ToElementAction::embed(typename ToElementAction::Value::element{id, each});
              })
              .cancellable(EffectOfElement::any);
        });
  }
};

/// `parent` followed by `element` for each element of a list: see `_ForEachReducer`.
template <class ToElementsState, class ToElementAction, Reducer Parent, Reducer Element>
auto forEach(Parent parent, Element element,
             std::source_location location = std::source_location::current()) {
  return _ForEachReducer<Parent, ToElementsState, ToElementAction, Element>{
      std::move(parent), std::move(element), location};
}

}  // namespace vek
