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

std::vector<std::unique_ptr<PaneHostingController>> hosting(std::vector<Pane> panes) {
  std::vector<std::unique_ptr<PaneHostingController>> items;
  items.reserve(panes.size());
  for (auto& pane : panes)
    items.push_back(std::make_unique<PaneHostingController>(std::move(pane)));
  return items;
}

}  // namespace

SettingsWindowController::SettingsWindowController(QQmlEngine& engine, std::vector<Pane> panes)
    : items_(hosting(std::move(panes))),
      selectedPane_(items_.front().get()),
      window_(makeWindow(engine, QStringLiteral("SettingsWindow"),
                         {{QStringLiteral("controller"), QVariant::fromValue(this)}})) {}

QVariantList SettingsWindowController::items() const {
  QVariantList all;
  for (auto const& item : items_) all.append(QVariant::fromValue(item.get()));
  return all;
}

void SettingsWindowController::showWindow(QString const& identifier) {
  if (!window_->isVisible()) {
    changeContentView(identifier.isEmpty() ? items_.front()->identifier() : identifier);
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
  auto const found = std::ranges::find_if(
      items_, [&](auto const& item) { return item->identifier() == identifier; });
  if (found == items_.end()) return;
  selectedPane_ = found->get();
  Q_EMIT selectedPaneChanged();
}

}  // namespace vek
