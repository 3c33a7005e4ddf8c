// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "views/AppStore.hpp"
#include "views/MainWindowController.hpp"
#include "views/StatusItem.hpp"
#include "views/Views.hpp"

namespace vek {

/// Makes what the program has on screen, in the order in which it has to be there, and owns it.
class AppDelegate {
 public:
  AppDelegate();
  AppDelegate(AppDelegate const&) = delete;
  AppDelegate& operator=(AppDelegate const&) = delete;
  ~AppDelegate();

  /// Once. The first action is sent last, so that whoever observes the store misses nothing.
  void applicationDidFinishLaunching();

 private:
  /// The root store, made at its first use.
  AppStore::Observed::Shared const& store();

  AppStore::Observed::Shared store_;
  std::unique_ptr<QQmlEngine> engine_;
  std::unique_ptr<AppStore> appStore_;
  std::unique_ptr<StatusItem> statusItem;
  std::unique_ptr<MainWindowController> mainWindowController;
};

}  // namespace vek
