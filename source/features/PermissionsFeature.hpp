// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <utility>

#include "Clients/SpeechRecognitionProvider.hpp"
#include "runtime/Dependency.hpp"
#include "runtime/Effect.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/ObservationIdentity.hpp"
#include "runtime/Sum.hpp"

namespace vek {

/// Finds out whether the recogniser that the user chose may run, and asks for it if not.
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

  Effect<Action> reduce(State& state, Action const& action) const;

 private:
  using Send = vek::Send<Action>;
  using Provider = Dependency<SpeechRecognitionProviderKey>;

  static Effect<Action> reduceInternal(State& state, InternalAction const& action);
  static Task<> lookUpEffect(Provider provider, Send send);
  static Task<> requestEffect(Provider provider, Send send);

  Provider speechRcognitionProvider;
};

}  // namespace vek
