// SPDX-License-Identifier: MIT
#include "views/UpdatePanel.hpp"

#include <utility>

#include "runtime/MainQueue.hpp"

namespace vek {

QString UpdatePanel::version() const {
  return QString::fromStdString(offer_.item.displayVersionString);
}

QString UpdatePanel::installedVersion() const {
  return QString::fromStdString(offer_.installedVersion);
}

QString UpdatePanel::notes() const {
  return QString::fromStdString(offer_.item.notes).trimmed();
}

QString UpdatePanel::link() const {
  return QString::fromStdString(offer_.item.link);
}

QString UpdatePanel::packageManager() const {
  return QString::fromStdString(offer_.packageManager);
}

void UpdatePanel::showChecking(std::function<void()> cancel) {
  cancel_ = std::move(cancel);
  show(Page::Checking);
}

void UpdatePanel::showUpdate(UpdateOffer offer) {
  offer_ = std::move(offer);
  show(Page::Update);
}

void UpdatePanel::showUpToDate(std::string const& installedVersion) {
  offer_.installedVersion = installedVersion;
  show(Page::UpToDate);
}

void UpdatePanel::showFailure(std::string const& reason) {
  failure_ = QString::fromStdString(reason);
  show(Page::Failure);
}

void UpdatePanel::didReceiveAttention() const {
  if (page_ == Page::Update) offer_.didReceiveAttention();
}

void UpdatePanel::get() {
  if (page_ != Page::Update || isOpening_) return;
  setOpening(true, false);
  opening_ = spawn(MainQueue::shared(), finishOpening(this, open_(offer_.item.link)));
}

Task<> UpdatePanel::finishOpening(QPointer<UpdatePanel> panel, Task<> opening) {
  auto const opened = co_await attempt(std::move(opening));
  if (Environment::isCancelled() || !panel) co_return;
  if (opened.hasValue()) co_return panel->choose(UpdateChoice::get);
  panel->setOpening(false, true);
}

void UpdatePanel::setOpening(bool isOpening, bool couldNotOpen) {
  isOpening_ = isOpening;
  couldNotOpen_ = couldNotOpen;
  Q_EMIT changed();
}

void UpdatePanel::close() {
  if (page_ == Page::Update) return choose(UpdateChoice::later);
  auto const cancel = page_ == Page::Checking ? std::exchange(cancel_, nullptr) : nullptr;
  show(Page::None);
  if (cancel) cancel();
}

void UpdatePanel::choose(UpdateChoice choice) {
  didReceiveAttention();
  show(Page::None);
  offer_.choose(choice);
}

void UpdatePanel::show(Page page) {
  auto const before = std::exchange(page_, page);
  opening_.cancel();
  setOpening(false, false);
  if (page == Page::None && before != Page::None) Q_EMIT closed();
}

}  // namespace vek
