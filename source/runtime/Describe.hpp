// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace vek {

namespace detail {

/// The last part of a type's name, as the compiler spells it.
template <class T>
constexpr std::string_view typeName() {
  std::string_view name = __PRETTY_FUNCTION__;
  auto const start = name.find("T = ") + 4;
  name = name.substr(start, name.rfind(']') - start);
  int depth = 0;
  for (auto i = name.size(); i-- > 0;) {
    if (name[i] == '>') ++depth;
    if (name[i] == '<') --depth;
    if (name[i] == ':' && depth == 0) return name.substr(i + 1);
  }
  return name;
}

}  // namespace detail

/// The case of an action, with the cases inside it: "transcripts(setUp)". Payloads stay out of it:
/// the text goes into logs.
template <class Action>
std::string describe(Action const& action) {
  if constexpr (requires { std::visit([](auto const&) {}, action.value); }) {
    return std::visit(
        [](auto const& which) {
          std::string name(detail::typeName<std::remove_cvref_t<decltype(which)>>());
          if constexpr (requires { describe(which.action); }) {
            auto const inner = describe(which.action);
            if (!inner.empty()) name += "(" + inner + ")";
          }
          return name;
        },
        action.value);
  } else {
    return "";
  }
}

}  // namespace vek
