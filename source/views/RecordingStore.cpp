// SPDX-License-Identifier: MIT
#include "views/RecordingStore.hpp"

#include <utility>

#include "views/Text.hpp"

namespace vek {

using State = RecordingFeature::State;
using Action = RecordingFeature::Action;

RecordingStore::RecordingStore(Observed::Shared store) : store_(std::move(store)) {
  store_.notify<[](State const& state) { return state.recording.has_value(); }>(
      this, &RecordingStore::isRecordingChanged);
  store_.notify<&State::recording>(this, &RecordingStore::displayedTranscriptChanged);
  store_.notify<&State::error>(this, &RecordingStore::errorChanged);
}

QString RecordingStore::displayedTranscript() const {
  return QString::fromStdString(state().displayedTranscript());
}

QString RecordingStore::error() const {
  return text(state().error);
}

QString RecordingStore::elapsedTimeText() const {
  return QString::fromStdString(state().elapsedTimeText());
}

void RecordingStore::recordButtonClicked() {
  store_.send(Action::recordButtonClicked{});
}

void RecordingStore::dismissErrorButtonClicked() {
  store_.send(Action::dismissErrorButtonClicked{});
}

}  // namespace vek
