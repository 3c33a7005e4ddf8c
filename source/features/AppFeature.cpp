// SPDX-License-Identifier: MIT
#include "features/AppFeature.hpp"

#include "runtime/Match.hpp"

namespace vek {

namespace {

using Action = AppFeature::Action;

Effect<Action> send(TranscriptsListFeature::Action action) {
  return Effect<Action>::send(Action::transcripts{std::move(action)});
}

Task<> launch(Send<Action> send) {
  send(Action::permissions{PermissionsFeature::Action::setUp{}});
  send(Action::session{SessionFeature::Action::setUp{}});
  co_return;
}

Effect<Action> route(SessionFeature::DelegateAction const& fact) {
  using Fact = SessionFeature::DelegateAction;
  return match(
      fact, [](Fact::isLoggedIn) { return send(TranscriptsListFeature::Action::setUp{}); },
      [](Fact::didLogOut) { return send(TranscriptsListFeature::Action::logOut{}); });
}

}  // namespace

Effect<Action> AppFeature::Routes::reduce(State&, Action const& action) const {
  if (auto const* session = std::get_if<Action::session>(&action.value)) {
    using Delegate = SessionFeature::Action::delegate;
    auto const* fact = std::get_if<Delegate>(&session->action.value);
    return fact ? route(fact->action) : Effect<Action>::none();
  }
  if (auto const* recording = std::get_if<Action::recording>(&action.value)) {
    // Its one fact is that a recording has finished.
    bool const isFact =
        std::holds_alternative<RecordingFeature::Action::delegate>(recording->action.value);
    return isFact ? send(TranscriptsListFeature::Action::setUp{}) : Effect<Action>::none();
  }
  if (std::holds_alternative<Action::start>(action.value)) return Effect<Action>::run(launch);
  return Effect<Action>::none();
}

}  // namespace vek
