// SPDX-License-Identifier: MIT
#include "views/AppDelegate.hpp"

#include <chrono>
#include <utility>

#include "features/AppFeature.hpp"
#include "platform/Log.hpp"
#include "platform/RedirectListener.hpp"
#include "platform/WebAuthenticationSession.hpp"
#include "runtime/MainQueue.hpp"
#include "runtime/ThreadPool.hpp"
#include "views/RecordingEnd.hpp"

namespace vek {

namespace {
/// Desktops give a program about that long to end.
constexpr std::chrono::seconds patience(10);
}  // namespace

AppDelegate::AppDelegate() = default;

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  // Made by the first who reads it, it begins to check by itself.
  static_cast<void>(updater.value());

  statusItem = std::make_unique<StatusItem>();
  statusItem->setImage(QStringLiteral("status item"));

  engine_ = makeEngine();
  store = Store<AppFeature::State, AppFeature::Action>::make(AppFeature::State{},
                                                             [] { return AppFeature(); });
  mainWindowController = std::make_unique<MainWindowController>(*engine_, store);
  aboutPanelController_ = std::make_unique<AboutPanelController>(*engine_);
  updateWindowController_ = std::make_unique<UpdateWindowController>(*engine_);
  updateWindowController_->present();
  statusItem->setAction([this] { mainWindowController->didClickStatusItem(); });

  settingsController = std::make_unique<SettingsController>(*engine_, store);
  auto const transcripts =
      store->scope<KeyPath<&AppFeature::State::transcripts>,
                   CasePath<AppFeature::Action, AppFeature::Action::transcripts>>();
  transcriptsWindowsController =
      std::make_unique<TranscriptsWindowsController>(*engine_, transcripts);

  recordingToggle_ = std::make_unique<RecordingToggle>(store, [this] { activate(); });
  launch_ = store->send(AppFeature::Action::start{});
  statusItem->followHost([this](bool exists) { statusAreaExists(exists); });
}

void AppDelegate::statusAreaExists(bool exists) {
  mainWindowController->setTaskbar(exists ? Taskbar::leftOut : Taskbar::listed);
  bool const isLaunching = !std::exchange(knowsStatusArea_, true);
  // Who has no status area would find nothing to click on.
  if (isLaunching && !exists) mainWindowController->show();
}

void AppDelegate::activate() {
  mainWindowController->show();
}

void AppDelegate::open(std::string url) {
  bool const isOurs = WebAuthenticationSession::expects(url);
  // Programs that are asked whether it is theirs may take their time.
  ThreadPool::shared().post([this, isOurs, url = std::move(url)] {
    bool const isDelivered = deliverRedirect(url);
    if (!isDelivered) {
      Logger("shell").error("What was opened is the redirect of no login that waits.");
    } else if (isOurs) {
      MainQueue::shared().post([this] { activate(); });
    }
  });
}

void AppDelegate::toggleRecording() {
  recordingToggle_->press(launch_);
}

void AppDelegate::endRecording() {
  if (!RecordingEnd(store).wait(patience)) {
    Logger("shell").error("The end of a recording could not be stored in time.");
  }
}

}  // namespace vek
