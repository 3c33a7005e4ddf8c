// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "Clients/Updater.hpp"
#include "runtime/Dependency.hpp"
#include "runtime/Effect.hpp"
#include "runtime/ObservationIdentity.hpp"
#include "runtime/Sum.hpp"

namespace vek {

/// The program's menu, and whether the settings window is wanted.
struct MenuFeature {
  struct State {
    /// The settings window is wanted on screen.
    bool isShowingSettings = false;
    ObservationIdentity identity = {};
    bool operator==(State const&) const = default;
  };

  struct ActionCases {
    struct settingsMenuItemClicked {
      bool operator==(settingsMenuItemClicked const&) const = default;
    };
    struct quitMenuItemClicked {
      bool operator==(quitMenuItemClicked const&) const = default;
    };
    struct checkForUpdatesMenuItemClicked {
      bool operator==(checkForUpdatesMenuItemClicked const&) const = default;
    };
    struct aboutMenuItemClicked {
      bool operator==(aboutMenuItemClicked const&) const = default;
    };
    struct settingsWindowCloseButtonClicked {
      bool operator==(settingsWindowCloseButtonClicked const&) const = default;
    };
  };
  struct Action
      : ActionCases,
        Sum<ActionCases::settingsMenuItemClicked, ActionCases::quitMenuItemClicked,
            ActionCases::checkForUpdatesMenuItemClicked, ActionCases::aboutMenuItemClicked,
            ActionCases::settingsWindowCloseButtonClicked> {
    using Sum::Sum;
  };

  Effect<Action> reduce(State& state, Action const& action) const;

 private:
  using Send = vek::Send<Action>;
  using Client = Dependency<UpdaterKey>;

  static Task<> quitEffect(Send send);
  static Task<> checkEffect(Client updater);
  static Task<> aboutEffect(Send send);

  Client updater;
};

}  // namespace vek
