// SPDX-License-Identifier: MIT
#include "views/RecordingEnd.hpp"

#include <string>
#include <utility>

#include "runtime/MainQueue.hpp"

namespace vek {

namespace {

constexpr std::chrono::milliseconds interval(100);

/// What the backend has when all is stored: the pending piece stands behind a newline.
std::string wholeText(Recording const& recording) {
  auto const& text = recording.transcript.string();
  return recording.tempTranscript ? text + "\n" + recording.tempTranscript->string() : text;
}

}  // namespace

RecordingEnd::RecordingEnd(Observed::Shared store)
    : store_(std::move(store)), errorBefore_(store_.state().recording.error) {
  store_.notify<&AppFeature::State::recording>(this, &RecordingEnd::recordingChanged);
}

bool RecordingEnd::wait(std::chrono::seconds limit) {
  auto const deadline = std::chrono::steady_clock::now() + limit;
  MainQueue::shared().runUntil(
      [&] { return isDone() || std::chrono::steady_clock::now() > deadline; }, interval);
  return isDone();
}

void RecordingEnd::recordingChanged() {
  auto const& state = store_.state().recording;
  if (state.recording) last_ = state.recording;
  if (state.lastAppendedTranscript) acknowledged_ = state.lastAppendedTranscript;
  if (!state.recording || state.isLoading || state.isSwitching || atStop_) return;
  atStop_ = state.recording;
  store_.send(AppFeature::Action::recording{RecordingFeature::Action::recordButtonClicked{}});
}

bool RecordingEnd::isDone() const {
  auto const& state = store_.state().recording;
  if (state.recording || state.isLoading || state.isSwitching) return false;
  // Pieces may still be on their way when the recording is over. One that the recogniser gives at
  // the stop follows what was pending then, or takes its place.
  bool const hasFailed = state.error && state.error != errorBefore_;
  return !last_ || hasFailed || isAcknowledged(*last_) || (atStop_ && isAcknowledged(*atStop_));
}

bool RecordingEnd::isAcknowledged(Recording const& recording) const {
  return wholeText(recording) == (acknowledged_ ? acknowledged_->string() : "");
}

}  // namespace vek
