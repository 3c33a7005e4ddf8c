// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/RecordOutput.hpp"
#include "features/RecordingFeature.hpp"
#include "runtime/Store.hpp"

namespace vek {

/// One recording, made by pressing the record button of a store and watching its state. Main
/// thread.
class RecordSession {
 public:
  using RecordingStore = Store<RecordingFeature::State, RecordingFeature::Action>;

  /// Presses the button.
  RecordSession(RecordingStore::Shared store, RecordOutput& output);

  /// Presses the button again as soon as it would take it. A second call changes nothing.
  void stop();

  /// Asks for a press that has to wait; call it now and then.
  void advance();

  /// Everything that the presses started has ended and nothing records.
  [[nodiscard]] bool isDone() const;
  [[nodiscard]] bool isPiecePending() const;
  [[nodiscard]] bool hasPieces() const { return !shownText_.empty(); }

  /// Prints the identifier. True when a transcript was made and the backend has all of its text.
  bool finish();

 private:
  void didChange(RecordingFeature::State const& state);
  void showPieces(Recording const& recording);
  void showPartial();
  void press(std::shared_ptr<bool> ended);

  RecordingStore::Shared store_;
  RecordOutput& output_;
  std::shared_ptr<bool> startEnded_ = std::make_shared<bool>(false);
  std::shared_ptr<bool> stopEnded_ = std::make_shared<bool>(false);
  bool wantsStop_ = false;
  bool hasPressedStop_ = false;
  std::optional<Recording> last_;
  std::optional<Recording> atStop_;
  std::optional<SharedText> acknowledged_;
  std::optional<ErrorObject> shownError_;
  std::string shownText_;
  Subscription observation_;
};

}  // namespace vek
