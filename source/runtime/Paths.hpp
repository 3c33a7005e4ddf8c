// SPDX-License-Identifier: MIT
#pragma once

#include <utility>
#include <variant>

namespace vek {

/// A writable path from a record to one of its fields: `KeyPath<&State::session>`.
template <auto Field>
struct KeyPath;

template <class Root_, class Value_, Value_ Root_::* Field>
struct KeyPath<Field> {
  using Root = Root_;
  using Value = Value_;
  static Value& get(Root& root) { return root.*Field; }
  static Value const& get(Root const& root) { return root.*Field; }
};

/// Embeds a child action in a parent action and extracts it again. `Case` is the parent's case, a
/// record with the one field `action`.
template <class Parent_, class Case>
struct CasePath {
  using Parent = Parent_;
  using Value = decltype(Case::action);

  static Parent embed(Value action) { return Parent(Case{std::move(action)}); }
  static Value const* extract(Parent const& parent) {
    auto const* found = std::get_if<Case>(&parent.value);
    return found ? &found->action : nullptr;
  }
};

}  // namespace vek
