// SPDX-License-Identifier: MIT
#pragma once

#include <utility>
#include <variant>

namespace vek {

/// An action of one element of a list.
template <class ID_, class Action_>
struct IdentifiedAction {
  using ID = ID_;
  using ElementAction = Action_;

  struct element {
    ID id;
    ElementAction action;
    bool operator==(element const&) const = default;
  };

  IdentifiedAction(element which) : value(std::move(which)) {}

  std::variant<element> value;
  bool operator==(IdentifiedAction const&) const = default;
};

}  // namespace vek
