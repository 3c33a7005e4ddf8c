// SPDX-License-Identifier: MIT
#include "platform/StandardUserDriver.hpp"

#include <memory>
#include <utility>

namespace vek {
namespace {

std::unique_ptr<UpdatePresenter>& presenter() {
  static auto& instance = *new std::unique_ptr<UpdatePresenter>;
  return instance;
}

}  // namespace

void StandardUserDriver::setPresenter(UpdatePresenter presenter) {
  vek::presenter() = std::make_unique<UpdatePresenter>(std::move(presenter));
}

void StandardUserDriver::showUserInitiatedUpdateCheck(std::function<void()> cancel) const {
  if (presenter()) presenter()->showChecking(std::move(cancel));
}

void StandardUserDriver::showUpdateFound(UpdateOffer offer, UserUpdateState const& state) const {
  bool const isActive = presenter() && presenter()->isActive();
  bool const isShown =
      presenter() &&
      (state.userInitiated ||
       delegate_.standardUserDriverShouldHandleShowingScheduledUpdate(offer.item, isActive));
  delegate_.standardUserDriverWillHandleShowingUpdate(isShown, offer.item, state);
  if (!isShown) return offer.choose(UpdateChoice::later);
  offer.takesFocus =
      state.userInitiated || isActive || !delegate_.supportsGentleScheduledUpdateReminders();
  offer.didReceiveAttention = [&delegate = delegate_, item = offer.item] {
    delegate.standardUserDriverDidReceiveUserAttentionForUpdate(item);
  };
  presenter()->showUpdate(std::move(offer));
}

void StandardUserDriver::showUpdateNotFound(std::string installedVersion) const {
  if (presenter()) presenter()->showUpToDate(std::move(installedVersion));
}

void StandardUserDriver::showUpdaterError(UpdateError const& error) const {
  if (presenter()) presenter()->showFailure(error);
}

void StandardUserDriver::showUpdateInFocus() const {
  if (presenter()) presenter()->showInFocus();
}

}  // namespace vek
