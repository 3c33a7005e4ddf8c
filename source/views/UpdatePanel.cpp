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

void UpdatePanel::showFailure(UpdateError const& error) {
  auto const detail = QString::fromStdString(error.detail());
  failure_ = words(error.code());
  bool const isSentence = detail.endsWith(u'.');
  if (!detail.isEmpty())
    failure_ += (isSentence ? QStringLiteral(" %1") : QStringLiteral(" (%1)")).arg(detail);
  show(Page::Failure);
}

QString UpdatePanel::words(UpdateError::Code code) {
  using enum UpdateError::Code;
  switch (code) {
    case noFeed:
      return tr("This installation does not say where its updates are published.");
    case insecureFeed:
      return tr("The address of the updates is not secure.");
    case noKey:
      return tr("This installation lacks the key that proves updates genuine.");
    case unreachable:
      return tr("The updates could not be fetched.");
    case refused:
      return tr("The server did not give out the updates.");
    case badSignature:
      return tr("The list of updates does not come from the maker of VEK.");
    case malformed:
      return tr("The list of updates cannot be read.");
    case outdated:
      break;
  }
  return tr("The server gave out an old list of updates.");
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
