// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "features/AppFeature.hpp"
#include "runtime/StoreTask.hpp"
#include "views/ObservedStore.hpp"

namespace vek {

/// Presses the record button for someone who is not at the window, and so does not see when it
/// counts: a press that comes too soon waits.
class RecordingToggle {
 public:
  using Observed = ObservedStore<AppFeature::State, AppFeature::Action>;

  /// `elsewise` is called when a press comes to nothing because there is no record button.
  RecordingToggle(Observed::Shared store, std::function<void()> elsewise);
  RecordingToggle(RecordingToggle const&) = delete;
  RecordingToggle& operator=(RecordingToggle const&) = delete;

  /// Starts or stops a recording as soon as that can be; `launch` finds out whether one can be
  /// started. Throws std::runtime_error while another press is under way. This object outlives what
  /// a press waits for.
  void press(StoreTask launch);

 private:
  /// What a press of the record button would do.
  enum class Button : std::uint8_t { isMissing, lacksPermission, isIgnored, starts, stops };

  static Button button(AppFeature::State const& state);
  void advance();
  /// Unless something else than `missed` is found then.
  Task<> giveUpAfter(StoreTask search, Button missed);

  Observed store_;
  std::function<void()> elsewise_;
  StoreTask launch_;
  /// What the press that waits is for.
  std::optional<Button> wish_;
};

}  // namespace vek
