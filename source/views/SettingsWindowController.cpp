// SPDX-License-Identifier: MIT
#include "views/SettingsWindowController.hpp"

#include <algorithm>
#include <utility>

#include "platform/UserDefaults.hpp"
#include "views/Placement.hpp"
#include "views/Views.hpp"
#include "views/WindowOrder.hpp"

namespace vek {

namespace {

QVariantMap fields(Pane const& pane) {
  return {{QStringLiteral("identifier"), pane.identifier},
          {QStringLiteral("title"), pane.title},
          {QStringLiteral("toolbarIcon"), pane.toolbarIcon},
          {QStringLiteral("tooltip"), pane.tooltip},
          {QStringLiteral("content"), pane.content},
          {QStringLiteral("contentProperties"), pane.contentProperties}};
}

}  // namespace

SettingsWindowController::SettingsWindowController(QQmlEngine& engine, std::vector<Pane> items)
    : items_(std::move(items)),
      window_(makeWindow(engine, QStringLiteral("SettingsWindow"),
                         {{QStringLiteral("controller"), QVariant::fromValue(this)}})) {}

QVariantList SettingsWindowController::items() const {
  QVariantList all;
  for (auto const& pane : items_) all.append(fields(pane));
  return all;
}

QVariant SettingsWindowController::selectedPane() const {
  return fields(items_[selected_]);
}

void SettingsWindowController::showWindow(QString const& identifier) {
  if (!window_->isVisible()) {
    changeContentView(identifier.isEmpty() ? items_.front().identifier : identifier);
    if (std::exchange(initialTabSelection, false)) Q_EMIT initialTabSelectionChanged();
  }
  QMetaObject::invokeMethod(this, &SettingsWindowController::orderFront, Qt::QueuedConnection);
}

void SettingsWindowController::orderFront() {
  if (!frame_) {
    frame_ = std::make_unique<FrameAutosave>(*window_, "VEK.Settings", UserDefaults::standard());
    if (!frame_->restore()) centre(*window_);
  }
  vek::orderFront(*window_);
  activateFrontWindow();
}

void SettingsWindowController::changeContentView(QString const& identifier) {
  auto const found = std::find_if(items_.begin(), items_.end(),
                                  [&](Pane const& pane) { return pane.identifier == identifier; });
  if (found == items_.end()) return;
  selected_ = static_cast<std::size_t>(found - items_.begin());
  Q_EMIT selectedPaneChanged();
}

}  // namespace vek
