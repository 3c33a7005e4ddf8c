// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "Clients/Updater.hpp"
#include "runtime/Dependency.hpp"
#include "runtime/StoreTask.hpp"
#include "views/AboutPanelController.hpp"
#include "views/AppStore.hpp"
#include "views/MainWindowController.hpp"
#include "views/RecordingToggle.hpp"
#include "views/SettingsController.hpp"
#include "views/StatusItem.hpp"
#include "views/TranscriptsWindowsController.hpp"
#include "views/UpdateWindowController.hpp"
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

  void orderFrontStandardAboutPanel() { aboutPanelController_->orderFront(); }

  /// Brings the main window to the front.
  void activate();
  /// Takes the redirect that a login ends with, its own or that of another program of the user. The
  /// event loop does not outlive this object.
  void open(std::string url);
  /// Starts or stops a recording, or shows what has to be done before there can be one. Throws
  /// std::runtime_error while it is about to.
  void toggleRecording();
  /// Once the event loop has ended: leaves nothing behind of a recording that is not stored.
  void endRecording();

 private:
  void statusAreaExists(bool exists);

  std::unique_ptr<QQmlEngine> engine_;
  std::unique_ptr<StatusItem> statusItem;
  std::unique_ptr<MainWindowController> mainWindowController;
  std::unique_ptr<SettingsController> settingsController;
  std::unique_ptr<TranscriptsWindowsController> transcriptsWindowsController;
  /// The root store, made at its first use.
  AppStore::Observed::Shared store;
  Dependency<UpdaterKey> updater;
  std::unique_ptr<AboutPanelController> aboutPanelController_;
  std::unique_ptr<UpdateWindowController> updateWindowController_;
  std::unique_ptr<RecordingToggle> recordingToggle_;
  /// What `start` started.
  StoreTask launch_;
  bool knowsStatusArea_ = false;
};

}  // namespace vek
