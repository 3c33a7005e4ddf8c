// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "Clients/AuthClient.hpp"
#include "Clients/CredentialsClient.hpp"
#include "identity/Credentials.hpp"
#include "runtime/Dependency.hpp"
#include "runtime/Effect.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/ObservationIdentity.hpp"
#include "runtime/Sum.hpp"

namespace vek {

/// The signed-in user: restores a stored session, logs in on the web, logs out.
struct SessionFeature {
  struct State {
    /// Absent means signed out.
    std::optional<Credentials> credentials = {};
    /// That of the last failed login.
    std::optional<ErrorObject> error = {};
    /// A web login is running.
    bool isLoading = false;
    ObservationIdentity identity = {};
    bool operator==(State const&) const = default;
  };

  struct InternalActionCases {
    struct didLogin {
      Credentials credentials;
      bool operator==(didLogin const&) const = default;
    };
    struct loginFailed {
      ErrorObject error;
      bool operator==(loginFailed const&) const = default;
    };
  };
  struct InternalAction : InternalActionCases,
                          Sum<InternalActionCases::didLogin, InternalActionCases::loginFailed> {
    using Sum::Sum;
  };

  struct DelegateActionCases {
    struct isLoggedIn {
      bool operator==(isLoggedIn const&) const = default;
    };
    struct didLogOut {
      bool operator==(didLogOut const&) const = default;
    };
  };
  struct DelegateAction : DelegateActionCases,
                          Sum<DelegateActionCases::isLoggedIn, DelegateActionCases::didLogOut> {
    using Sum::Sum;
  };

  struct ActionCases {
    struct internal {
      InternalAction action;
      bool operator==(internal const&) const = default;
    };
    struct delegate {
      DelegateAction action;
      bool operator==(delegate const&) const = default;
    };
    struct setUp {
      bool operator==(setUp const&) const = default;
    };
    struct loginButtonClicked {
      bool operator==(loginButtonClicked const&) const = default;
    };
    struct dismissErrorButtonClicked {
      bool operator==(dismissErrorButtonClicked const&) const = default;
    };
    struct logout {
      bool operator==(logout const&) const = default;
    };
  };
  struct Action : ActionCases,
                  Sum<ActionCases::internal, ActionCases::delegate, ActionCases::setUp,
                      ActionCases::loginButtonClicked, ActionCases::dismissErrorButtonClicked,
                      ActionCases::logout> {
    using Sum::Sum;
  };

  Effect<Action> reduce(State& state, Action const& action) const;

 private:
  using Send = vek::Send<Action>;
  using Auth = Dependency<AuthClientKey>;
  using CredentialsStore = Dependency<CredentialsClientKey>;

  Effect<Action> reduceInternal(State& state, InternalAction const& action) const;

  static Task<> restoreEffect(CredentialsStore credentialsClient, Send send);
  static Task<> logInEffect(Auth authClient, Send send);
  static Task<> storeEffect(CredentialsStore credentialsClient, Credentials credentials, Send send);
  static Task<> logOutEffect(CredentialsStore credentialsClient, Send send);

  Auth authClient;
  CredentialsStore credentialsClient;
};

}  // namespace vek
