// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "platform/UpdateError.hpp"
#include "platform/UpdateItem.hpp"

namespace vek {

enum class UpdateChoice {
  /// This version is not to be shown again.
  skip,
  later,
  get,
};

/// An update that the user is asked about.
struct UpdateOffer {
  UpdateItem item;
  std::string installedVersion;
  /// What updates this installation in the user's place, such as "APT"; empty when nothing does.
  std::string packageManager;
  /// The user waits for it, or works with the program right now.
  bool takesFocus = false;
  /// To be called when the user turns to it.
  std::function<void()> didReceiveAttention = {};
  /// To be called once, at its end.
  std::function<void(UpdateChoice)> choose = {};
};

/// How the user sees checks for updates. Whoever owns the screen hands it in. What is shown takes
/// the place of what was shown before. Main thread.
struct UpdatePresenter {
  /// The user works with the program right now.
  std::function<bool()> isActive;
  /// A check that the user waits for is under way.
  std::function<void(std::function<void()> cancel)> showChecking;
  std::function<void(UpdateOffer)> showUpdate;
  std::function<void(std::string installedVersion)> showUpToDate;
  std::function<void(UpdateError const&)> showFailure;
  /// Brings what is shown to the front.
  std::function<void()> showInFocus;
};

}  // namespace vek
