// SPDX-License-Identifier: MIT
#include "Clients/UpdaterImpl.hpp"

#include "Clients/UpdaterDelegateImpl.hpp"
#include "runtime/MainQueue.hpp"
#include "runtime/TaskHandle.hpp"

namespace vek {
namespace {

using Controller = std::shared_ptr<StandardUpdaterController>;

/// The one of this process, which keeps it for good.
UpdaterDelegate& updaterDelegate() {
  static auto* const instance = new UpdaterDelegate(UserNotificationCenter::current());
  return *instance;
}

Task<> check(Controller controller) {
  controller->checkForUpdates();
  co_return;
}

/// The check outlives whoever asked for it.
Task<> startCheck(Controller controller) {
  spawn(MainQueue::shared(), check(std::move(controller)));
  co_return;
}

}  // namespace

Updater UpdaterImpl::client(Controller const& controller) {
  return {
      .checkForUpdates = [controller] { return startCheck(controller); },
      .automaticallyChecksForUpdates =
          [controller] { return controller->updater().automaticallyChecksForUpdates(); },
      .automaticallyDownloadsUpdates =
          [controller] { return controller->updater().automaticallyDownloadsUpdates(); },
      .setAutomaticallyChecksForUpdates =
          [controller](bool checks) {
            controller->updater().setAutomaticallyChecksForUpdates(checks);
          },
      .setAutomaticallyDownloadsUpdates =
          [controller](bool downloads) {
            controller->updater().setAutomaticallyDownloadsUpdates(downloads);
          },
  };
}

Updater UpdaterKey::liveValue() {
  auto& delegate = updaterDelegate();
  return UpdaterImpl::client(
      std::make_shared<StandardUpdaterController>(StartingUpdater::yes, delegate, delegate));
}

}  // namespace vek
