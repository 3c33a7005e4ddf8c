// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

#include "features/AppFeature.hpp"
#include "runtime/ErrorObject.hpp"
#include "views/ObservedStore.hpp"

namespace vek {

/// Stops the recording under way, as a press of the record button does, before the program ends.
class RecordingEnd {
 public:
  using Observed = ObservedStore<AppFeature::State, AppFeature::Action>;

  explicit RecordingEnd(Observed::Shared store);
  RecordingEnd(RecordingEnd const&) = delete;
  RecordingEnd& operator=(RecordingEnd const&) = delete;

  /// Runs the main queue until the backend has the text. False when it does not in time.
  bool wait(std::chrono::seconds limit);

 private:
  void recordingChanged();
  [[nodiscard]] bool isDone() const;
  [[nodiscard]] bool isAcknowledged(Recording const& recording) const;

  Observed store_;
  /// As it was at last, and as it was when it was told to stop.
  std::optional<Recording> last_;
  std::optional<Recording> atStop_;
  std::optional<SharedText> acknowledged_;
  /// Of what failed earlier, and says nothing of the end.
  std::optional<ErrorObject> errorBefore_;
};

}  // namespace vek
