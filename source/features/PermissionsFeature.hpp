// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <utility>

#include "runtime/Effect.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/ObservationIdentity.hpp"
#include "runtime/Sum.hpp"

namespace vek {

/// Whether the current recogniser may run. Its reducer does nothing yet: recording asks nobody.
struct PermissionsFeature {
  struct State {
    /// A request to the user is open.
    bool isLoading = false;
    /// The last answer.
    bool hasRecordingPermissions = false;
    /// The last failure of a request, until dismissed.
    std::optional<ErrorObject> error = {};
    ObservationIdentity identity = {};
    bool operator==(State const&) const = default;
  };

  struct InternalActionCases {
    struct hasRecordingPermissions {
      bool value;
      bool operator==(hasRecordingPermissions const&) const = default;
    };
    struct permissionsRequestError {
      ErrorObject error;
      bool operator==(permissionsRequestError const&) const = default;
    };
  };
  struct InternalAction : InternalActionCases,
                          Sum<InternalActionCases::hasRecordingPermissions,
                              InternalActionCases::permissionsRequestError> {
    using Sum::Sum;
  };

  struct ActionCases {
    struct internal {
      InternalAction action;
      bool operator==(internal const&) const = default;
    };
    struct setUp {
      bool operator==(setUp const&) const = default;
    };
    struct requestPermissionsClicked {
      bool operator==(requestPermissionsClicked const&) const = default;
    };
    struct dismissErrorButtonClicked {
      bool operator==(dismissErrorButtonClicked const&) const = default;
    };
  };
  struct Action
      : ActionCases,
        Sum<ActionCases::internal, ActionCases::setUp, ActionCases::requestPermissionsClicked,
            ActionCases::dismissErrorButtonClicked> {
    using Sum::Sum;
  };

  Effect<Action> reduce(State&, Action const&) const { return Effect<Action>::none(); }
};

}  // namespace vek
