// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <utility>
#include <variant>

#include "records/Hashing.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/SharedText.hpp"

namespace vek {

/// How far the fetch of a text is.
struct TranscriptContentState {
  /// Nothing was fetched yet.
  struct initial {
    bool operator==(initial const&) const = default;
  };
  /// A fetch is under way.
  struct loading {
    bool operator==(loading const&) const = default;
  };
  /// Fetched; the text may be empty.
  struct content {
    SharedText text;
    bool operator==(content const&) const = default;
  };
  /// The fetch failed. Equal only to the same failure.
  struct error {
    ErrorObject object;
    bool operator==(error const&) const = default;
  };
  using Case = std::variant<initial, loading, content, error>;

  Case value = initial();

  TranscriptContentState() = default;
  template <class OneCase>
    requires std::constructible_from<Case, OneCase>
  TranscriptContentState(OneCase oneCase) : value(std::move(oneCase)) {}

  /// The payload of `OneCase`, or null in another case.
  template <class OneCase>
  [[nodiscard]] OneCase const* as() const {
    return std::get_if<OneCase>(&value);
  }

  bool operator==(TranscriptContentState const&) const = default;
};

}  // namespace vek

template <>
struct std::hash<vek::TranscriptContentState> {
  std::size_t operator()(vek::TranscriptContentState const& state) const {
    using State = vek::TranscriptContentState;
    if (auto const* content = state.as<State::content>()) return vek::hashOf(content->text);
    if (auto const* error = state.as<State::error>()) return vek::hashOf(error->object);
    return state.value.index();
  }
};
