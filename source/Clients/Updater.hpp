// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "runtime/DependencyValues.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// Finds updates of the program, and shows them itself.
struct Updater {
  /// A check that the user waits for. Ends when the check has been asked for.
  std::function<Task<>()> checkForUpdates;
  std::function<bool()> automaticallyChecksForUpdates;
  std::function<bool()> automaticallyDownloadsUpdates;
  std::function<void(bool)> setAutomaticallyChecksForUpdates;
  std::function<void(bool)> setAutomaticallyDownloadsUpdates;
};

struct UpdaterKey {
  using Value = Updater;
  static Updater liveValue();
};
inline constexpr DependencyKeyPath<UpdaterKey> updater;

}  // namespace vek
