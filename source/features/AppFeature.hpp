// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "features/MenuFeature.hpp"
#include "features/PermissionsFeature.hpp"
#include "features/RecordingFeature.hpp"
#include "features/SessionFeature.hpp"
#include "features/TranscriptsListFeature.hpp"
#include "runtime/Reducer.hpp"
#include "runtime/Store.hpp"
#include "runtime/Sum.hpp"

namespace vek {

/// The root of all features. It has no state of its own: it starts the two features that look at
/// the machine at launch and carries the three facts that one child has to tell another.
struct AppFeature {
  struct State {
    SessionFeature::State session = {};
    PermissionsFeature::State permissions = {};
    RecordingFeature::State recording = {};
    MenuFeature::State menu = {};
    TranscriptsListFeature::State transcripts = {};
    ObservationIdentity identity = {};

    /// Something is under way that the header shows. A login is not among it.
    [[nodiscard]] bool isLoading() const {
      return recording.isLoading || permissions.isLoading || transcripts.isLoading;
    }
    bool operator==(State const&) const = default;
  };

  struct ActionCases {
    struct session {
      SessionFeature::Action action;
      bool operator==(session const&) const = default;
    };
    struct permissions {
      PermissionsFeature::Action action;
      bool operator==(permissions const&) const = default;
    };
    struct recording {
      RecordingFeature::Action action;
      bool operator==(recording const&) const = default;
    };
    struct menu {
      MenuFeature::Action action;
      bool operator==(menu const&) const = default;
    };
    struct transcripts {
      TranscriptsListFeature::Action action;
      bool operator==(transcripts const&) const = default;
    };
    struct start {
      bool operator==(start const&) const = default;
    };
  };
  struct Action : ActionCases,
                  Sum<ActionCases::session, ActionCases::permissions, ActionCases::recording,
                      ActionCases::menu, ActionCases::transcripts, ActionCases::start> {
    using Sum::Sum;
  };

  Effect<Action> reduce(State& state, Action const& action) const {
    return children.reduce(state, action);
  }

 private:
  template <auto Field, class Case, class Child>
  using Slot = Scope<KeyPath<Field>, CasePath<Action, Case>, Child>;

  /// The root's own step. It runs last and only adds effects.
  struct Routes {
    using State = AppFeature::State;
    using Action = AppFeature::Action;
    Effect<Action> reduce(State& state, Action const& action) const;
  };

  using Children =
      Reducers<Slot<&State::session, Action::session, SessionFeature>,
               Slot<&State::permissions, Action::permissions, PermissionsFeature>,
               Slot<&State::recording, Action::recording, RecordingFeature>,
               Slot<&State::menu, Action::menu, MenuFeature>,
               Slot<&State::transcripts, Action::transcripts, TranscriptsListFeature>, Routes>;
  Children children = Children({}, {}, {}, {}, {}, {});
};

}  // namespace vek
