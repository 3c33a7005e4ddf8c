// SPDX-License-Identifier: MIT
#include "views/RecordingToggle.hpp"

#include <utility>

#include "runtime/MainQueue.hpp"
#include "runtime/TaskHandle.hpp"

namespace vek {

namespace {

/// The record button is on the screen, or a recording under way that it stops.
bool canRecord(AppFeature::State const& state) {
  return state.recording.recording ||
         (state.session.credentials && state.permissions.hasRecordingPermissions);
}

}  // namespace

RecordingToggle::RecordingToggle(Observed::Shared store) : store_(std::move(store)) {
  store_.notify<&canRecord>(this, &RecordingToggle::canRecordChanged);
}

void RecordingToggle::press(StoreTask const& launch, std::function<void()> elsewise) {
  if (waiting_) return;
  waiting_ = std::move(elsewise);
  canRecordChanged();
  if (waiting_) spawn(MainQueue::shared(), endWaiting(launch.finish()));
}

Task<> RecordingToggle::endWaiting(Task<> launch) {
  co_await std::move(launch);
  if (auto const elsewise = std::exchange(waiting_, nullptr)) elsewise();
}

void RecordingToggle::canRecordChanged() {
  if (!waiting_ || !canRecord(store_.state())) return;
  waiting_ = nullptr;
  store_.send(AppFeature::Action::recording{RecordingFeature::Action::recordButtonClicked{}});
}

}  // namespace vek
