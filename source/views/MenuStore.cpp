// SPDX-License-Identifier: MIT
#include "views/MenuStore.hpp"

#include <utility>

namespace vek {

using Action = MenuFeature::Action;

MenuStore::MenuStore(Observed::Shared store) : store_(std::move(store)) {}

void MenuStore::settingsMenuItemClicked() {
  store_.send(Action::settingsMenuItemClicked{});
}

void MenuStore::quitMenuItemClicked() {
  store_.send(Action::quitMenuItemClicked{});
}

void MenuStore::checkForUpdatesMenuItemClicked() {
  store_.send(Action::checkForUpdatesMenuItemClicked{});
}

void MenuStore::aboutMenuItemClicked() {
  store_.send(Action::aboutMenuItemClicked{});
}

}  // namespace vek
