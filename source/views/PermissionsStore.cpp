// SPDX-License-Identifier: MIT
#include "views/PermissionsStore.hpp"

#include <utility>

#include "views/Text.hpp"

namespace vek {

using State = PermissionsFeature::State;
using Action = PermissionsFeature::Action;

PermissionsStore::PermissionsStore(Observed::Shared store) : store_(std::move(store)) {
  store_.notify<&State::isLoading>(this, &PermissionsStore::isLoadingChanged);
  store_.notify<&State::hasRecordingPermissions>(this,
                                                 &PermissionsStore::hasRecordingPermissionsChanged);
  store_.notify<&State::error>(this, &PermissionsStore::errorChanged);
}

QString PermissionsStore::error() const {
  return text(state().error);
}

void PermissionsStore::requestPermissionsClicked() {
  store_.send(Action::requestPermissionsClicked{});
}

void PermissionsStore::dismissErrorButtonClicked() {
  store_.send(Action::dismissErrorButtonClicked{});
}

}  // namespace vek
