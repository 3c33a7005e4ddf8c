// SPDX-License-Identifier: MIT
#include "features/SessionFeature.hpp"

#include <utility>

#include "runtime/Match.hpp"

namespace vek {

namespace {

using Action = SessionFeature::Action;
using InternalAction = SessionFeature::InternalAction;
using DelegateAction = SessionFeature::DelegateAction;

Action didLogin(Credentials credentials) {
  return Action::internal{InternalAction::didLogin{std::move(credentials)}};
}

}  // namespace

Effect<Action> SessionFeature::reduce(State& state, Action const& action) const {
  return match(
      action,
      [&](Action::internal const& internal) { return reduceInternal(state, internal.action); },
      [](Action::delegate) { return Effect<Action>::none(); },
      [&](Action::setUp) {
        return Effect<Action>::run(
            [client = credentialsClient](Send send) { return restoreEffect(client, send); });
      },
      [&](Action::loginButtonClicked) {
        state.isLoading = true;
        auto effect = Effect<Action>::run(
            [client = authClient](Send send) { return logInEffect(client, send); });
        state.error.reset();
        return effect;
      },
      [&](Action::dismissErrorButtonClicked) {
        state.error.reset();
        return Effect<Action>::none();
      },
      [&](Action::logout) {
        state.credentials.reset();
        return Effect<Action>::run(
            [client = credentialsClient](Send send) { return logOutEffect(client, send); });
      });
}

Effect<Action> SessionFeature::reduceInternal(State& state, InternalAction const& action) const {
  state.isLoading = false;
  return match(
      action,
      [&](InternalAction::didLogin const& login) {
        state.credentials = login.credentials;
        return Effect<Action>::run(
            [client = credentialsClient, credentials = login.credentials](Send send) {
              return storeEffect(client, credentials, send);
            });
      },
      [&](InternalAction::loginFailed const& failure) {
        state.error = failure.error;
        return Effect<Action>::none();
      });
}

Task<> SessionFeature::restoreEffect(CredentialsStore credentialsClient, Send send) {
  auto credentials = co_await attempt(credentialsClient->credentials());
  // Who has none is signed out, which is no error.
  if (credentials) send(didLogin(std::move(credentials).value()));
}

Task<> SessionFeature::logInEffect(Auth authClient, Send send) {
  auto credentials = co_await attempt(authClient->logIn());
  if (credentials) {
    send(didLogin(std::move(credentials).value()));
  } else {
    send(Action::internal{InternalAction::loginFailed{ErrorObject(credentials.error())}});
  }
}

Task<> SessionFeature::storeEffect(CredentialsStore credentialsClient, Credentials credentials,
                                   Send send) {
  // What could not be stored is good for this run.
  co_await credentialsClient->storeCredentials(std::move(credentials));
  send(Action::delegate{DelegateAction::isLoggedIn{}});
}

Task<> SessionFeature::logOutEffect(CredentialsStore credentialsClient, Send send) {
  co_await credentialsClient->logOut();
  send(Action::delegate{DelegateAction::didLogOut{}});
}

}  // namespace vek
