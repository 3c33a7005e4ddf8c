// SPDX-License-Identifier: MIT
#pragma once

#include "platform/UpdateItem.hpp"

namespace vek {

/// Has a say in how the standard user driver shows updates, and hears of it. Main thread.
class StandardUserDriverDelegate {
 public:
  StandardUserDriverDelegate() = default;
  StandardUserDriverDelegate(StandardUserDriverDelegate const&) = delete;
  StandardUserDriverDelegate& operator=(StandardUserDriverDelegate const&) = delete;
  virtual ~StandardUserDriverDelegate() = default;

  /// Whether what the schedule has found is to come up without taking the focus from the user's
  /// work.
  [[nodiscard]] virtual bool supportsGentleScheduledUpdateReminders() = 0;
  /// Whether the driver shows what the schedule has found, rather than nobody.
  [[nodiscard]] virtual bool standardUserDriverShouldHandleShowingScheduledUpdate(
      UpdateItem const& update, bool inImmediateFocus) = 0;
  virtual void standardUserDriverWillHandleShowingUpdate(bool handleShowingUpdate,
                                                         UpdateItem const& update,
                                                         UserUpdateState const& state) = 0;
  virtual void standardUserDriverDidReceiveUserAttentionForUpdate(UpdateItem const& update) = 0;
};

}  // namespace vek
