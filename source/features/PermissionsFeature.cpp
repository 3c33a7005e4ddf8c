// SPDX-License-Identifier: MIT
#include "features/PermissionsFeature.hpp"

#include "runtime/Match.hpp"

namespace vek {

namespace {

using Action = PermissionsFeature::Action;
using InternalAction = PermissionsFeature::InternalAction;

Action hasRecordingPermissions(bool value) {
  return Action::internal{InternalAction::hasRecordingPermissions{value}};
}

}  // namespace

Effect<Action> PermissionsFeature::reduce(State& state, Action const& action) const {
  return match(
      action,
      [&](Action::internal const& internal) { return reduceInternal(state, internal.action); },
      [&](Action::setUp) {
        return Effect<Action>::run([provider = speechRcognitionProvider](Send send) {
          return lookUpEffect(provider, send);
        });
      },
      [&](Action::requestPermissionsClicked) {
        state.isLoading = true;
        return Effect<Action>::run([provider = speechRcognitionProvider](Send send) {
          return requestEffect(provider, send);
        });
      },
      [&](Action::dismissErrorButtonClicked) {
        state.error.reset();
        return Effect<Action>::none();
      });
}

Effect<Action> PermissionsFeature::reduceInternal(State& state, InternalAction const& action) {
  state.isLoading = false;
  match(
      action,
      [&](InternalAction::hasRecordingPermissions answer) {
        state.hasRecordingPermissions = answer.value;
      },
      [&](InternalAction::permissionsRequestError const& failure) { state.error = failure.error; });
  return Effect<Action>::none();
}

Task<> PermissionsFeature::lookUpEffect(Provider provider, Send send) {
  send(hasRecordingPermissions(co_await provider->hasPermission()));
}

Task<> PermissionsFeature::requestEffect(Provider provider, Send send) {
  auto const answer = co_await attempt(provider->requestPermission());
  if (answer) {
    send(hasRecordingPermissions(answer.value()));
  } else {
    ErrorObject error(answer.error());
    send(Action::internal{InternalAction::permissionsRequestError{std::move(error)}});
  }
}

}  // namespace vek
