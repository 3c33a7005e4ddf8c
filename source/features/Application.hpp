// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>

namespace vek {

enum class ActivationOptions : std::uint8_t { activateIgnoringOtherApps = 2 };

/// What features ask of the running program itself. Whoever owns the screen hands it in; until
/// then its operations do nothing. Main thread.
struct Application {
  std::function<void()> terminate = [] {};
  std::function<void()> orderFrontStandardAboutPanel = [] {};
  /// Brings the program's windows forward.
  std::function<void(ActivationOptions)> activate = [](ActivationOptions) {};

  static Application& shared();
};

}  // namespace vek
