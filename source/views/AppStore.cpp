// SPDX-License-Identifier: MIT
#include "views/AppStore.hpp"

#include <utility>

namespace vek {

using State = AppFeature::State;
using Action = AppFeature::Action;

namespace {

template <auto Field, class Case>
auto part(Store<State, Action>& store) {
  return store.scope<KeyPath<Field>, CasePath<Action, Case>>();
}

}  // namespace

AppStore::AppStore(Observed::Shared store)
    : store_(std::move(store)),
      session_(part<&State::session, Action::session>(*store_.store())),
      permissions_(part<&State::permissions, Action::permissions>(*store_.store())),
      recording_(part<&State::recording, Action::recording>(*store_.store())),
      menu_(part<&State::menu, Action::menu>(*store_.store())),
      transcripts_(part<&State::transcripts, Action::transcripts>(*store_.store())) {
  store_.notify<&State::isLoading>(this, &AppStore::isLoadingChanged);
}

}  // namespace vek
