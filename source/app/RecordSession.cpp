// SPDX-License-Identifier: MIT
#include "app/RecordSession.hpp"

#include <utility>

#include "runtime/MainQueue.hpp"

namespace vek {

namespace {

Task<> awaitEnd(StoreTask task, std::shared_ptr<bool> ended) {
  co_await task.finish();
  *ended = true;
}

/// What the backend has in the end when all goes well: the pending piece is saved behind a newline.
std::string wholeText(Recording const& recording) {
  auto const& text = recording.transcript.string();
  return recording.tempTranscript ? text + "\n" + recording.tempTranscript->string() : text;
}

}  // namespace

RecordSession::RecordSession(RecordingStore::Shared store, RecordOutput& output)
    : store_(std::move(store)), output_(output) {
  observation_ = store_->publisher().subscribe(
      {[this](RecordingFeature::State const& state) { didChange(state); }, [] {}});
  press(startEnded_);
}

void RecordSession::press(std::shared_ptr<bool> ended) {
  auto task = store_->send(RecordingFeature::Action::recordButtonClicked{});
  spawn(MainQueue::shared(), awaitEnd(std::move(task), std::move(ended)));
}

void RecordSession::stop() {
  wantsStop_ = true;
  advance();
}

void RecordSession::advance() {
  auto const& state = store_->state();
  showPartial();
  if (!wantsStop_ || hasPressedStop_ || !state.recording || state.isLoading) return;
  hasPressedStop_ = true;
  atStop_ = state.recording;
  press(stopEnded_);
}

bool RecordSession::isDone() const {
  return *startEnded_ && !store_->state().recording && (!hasPressedStop_ || *stopEnded_);
}

bool RecordSession::isPiecePending() const {
  auto const& recording = store_->state().recording;
  return recording && recording->tempTranscript;
}

void RecordSession::didChange(RecordingFeature::State const& state) {
  if (state.error && state.error != shownError_) {
    output_.error(state.error->localizedDescription());
  }
  shownError_ = state.error;
  if (state.lastAppendedTranscript) acknowledged_ = state.lastAppendedTranscript;
  if (!state.recording) return;
  if (!last_) output_.message("Recording. Ctrl-C stops.");
  last_ = state.recording;
  showPieces(*last_);
  showPartial();
}

void RecordSession::showPieces(Recording const& recording) {
  auto const& text = recording.transcript.string();
  if (text.size() > shownText_.size()) {
    auto const start = shownText_.empty() ? 0 : shownText_.size() + 1;
    output_.piece(std::string_view(text).substr(start));
    shownText_ = text;
  }
}

void RecordSession::showPartial() {
  auto const& state = store_->state();
  if (!state.recording) return;
  auto const& pending = state.recording->tempTranscript;
  output_.partial(state.elapsedTimeText(), pending ? pending->string() : "");
}

bool RecordSession::finish() {
  if (!last_) return false;
  // What is pending at the press is saved; what comes after it is a finished piece or nothing.
  auto const& pending = atStop_ ? atStop_->tempTranscript : last_->tempTranscript;
  if (pending && !pending->empty()) output_.piece(pending->string());
  auto const acknowledged = acknowledged_ ? acknowledged_->string() : "";
  bool const hasAllText =
      acknowledged == wholeText(*last_) || (atStop_ && acknowledged == wholeText(*atStop_));
  bool const isStored = hasPressedStop_ && hasAllText;
  output_.finished(last_->id, isStored);
  if (!hasAllText) output_.error("Not all of the text was stored.");
  return isStored;
}

}  // namespace vek
