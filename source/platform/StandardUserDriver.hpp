// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "platform/StandardUserDriverDelegate.hpp"
#include "platform/UpdateError.hpp"
#include "platform/UpdatePresenter.hpp"

namespace vek {

/// Shows the user what the updater does, through the presenter of the process, as its delegate
/// wants it. Main thread.
class StandardUserDriver {
 public:
  /// From now on the process shows updates so. Without a presenter nothing is shown.
  static void setPresenter(UpdatePresenter presenter);

  /// The delegate outlives the driver.
  explicit StandardUserDriver(StandardUserDriverDelegate& delegate) : delegate_(delegate) {}

  void showUserInitiatedUpdateCheck(std::function<void()> cancel) const;
  /// Calls `offer.choose` in the end, also when nobody shows the update.
  void showUpdateFound(UpdateOffer offer, UserUpdateState const& state) const;
  void showUpdateNotFound(std::string installedVersion) const;
  void showUpdaterError(UpdateError const& error) const;
  void showUpdateInFocus() const;

 private:
  StandardUserDriverDelegate& delegate_;
};

}  // namespace vek
