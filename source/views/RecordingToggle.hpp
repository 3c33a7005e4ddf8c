// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "features/AppFeature.hpp"
#include "runtime/StoreTask.hpp"
#include "views/ObservedStore.hpp"

namespace vek {

/// Presses the record button for someone who is not at the window.
class RecordingToggle {
 public:
  using Observed = ObservedStore<AppFeature::State, AppFeature::Action>;

  explicit RecordingToggle(Observed::Shared store);
  RecordingToggle(RecordingToggle const&) = delete;
  RecordingToggle& operator=(RecordingToggle const&) = delete;

  /// Starts or stops a recording. While `launch` is under way it waits for what that finds out;
  /// when there is no record button then, `elsewise` is called. This object outlives the launch.
  void press(StoreTask const& launch, std::function<void()> elsewise);

 private:
  Task<> endWaiting(Task<> launch);
  void canRecordChanged();

  Observed store_;
  /// Called when the press that waits has come to nothing; empty when none waits.
  std::function<void()> waiting_;
};

}  // namespace vek
