// SPDX-License-Identifier: MIT
#include "views/AppDelegate.hpp"

#include "features/AppFeature.hpp"

namespace vek {

AppDelegate::AppDelegate() = default;

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  engine_ = makeEngine();
  appStore_ = std::make_unique<AppStore>(store());
  mainWindowController = std::make_unique<MainWindowController>(*engine_, *appStore_);
  store()->send(AppFeature::Action::start{});
}

AppStore::Observed::Shared const& AppDelegate::store() {
  if (!store_) {
    store_ = Store<AppFeature::State, AppFeature::Action>::make(AppFeature::State{},
                                                                [] { return AppFeature(); });
  }
  return store_;
}

}  // namespace vek
