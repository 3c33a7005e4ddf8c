// SPDX-License-Identifier: MIT
#include "views/RecordingToggle.hpp"

#include <stdexcept>
#include <utility>

#include "runtime/MainQueue.hpp"
#include "runtime/TaskHandle.hpp"

namespace vek {

using Action = AppFeature::Action;

RecordingToggle::RecordingToggle(Observed::Shared store, std::function<void()> elsewise)
    : store_(std::move(store)), elsewise_(std::move(elsewise)) {
  store_.notify<&button>(this, &RecordingToggle::advance);
}

RecordingToggle::Button RecordingToggle::button(AppFeature::State const& state) {
  auto const& recording = state.recording;
  if (recording.isLoading || recording.isSwitching) return Button::isIgnored;
  if (recording.recording) return Button::stops;
  if (!state.session.credentials) return Button::isMissing;
  return state.permissions.hasRecordingPermissions ? Button::starts : Button::lacksPermission;
}

void RecordingToggle::press(StoreTask launch) {
  auto const& recording = store_.state().recording;
  if (wish_ || recording.isSwitching) {
    throw std::runtime_error("VEK is about to start or to stop a recording already.");
  }
  launch_ = std::move(launch);
  wish_ = recording.recording ? Button::stops : Button::starts;
  advance();
}

void RecordingToggle::advance() {
  auto const present = button(store_.state());
  if (!wish_ || present == Button::isIgnored) return;
  // Someone else may have been there first.
  bool const isGranted = (wish_ == Button::stops) != (present == Button::stops);
  if (isGranted) {
    wish_.reset();
  } else if (present == Button::isMissing) {
    spawn(MainQueue::shared(), giveUpAfter(launch_, present));
  } else if (present == Button::lacksPermission) {
    auto look = store_.store()->send(Action::permissions{PermissionsFeature::Action::setUp{}});
    spawn(MainQueue::shared(), giveUpAfter(std::move(look), present));
  } else {
    wish_.reset();
    store_.send(Action::recording{RecordingFeature::Action::recordButtonClicked{}});
  }
}

Task<> RecordingToggle::giveUpAfter(StoreTask search, Button missed) {
  co_await search.finish();
  if (!wish_ || button(store_.state()) != missed) co_return;
  wish_.reset();
  elsewise_();
}

}  // namespace vek
