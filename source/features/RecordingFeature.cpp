// SPDX-License-Identifier: MIT
#include "features/RecordingFeature.hpp"

#include <fmt/format.h>

#include <chrono>

#include "runtime/Match.hpp"

namespace vek {

namespace {

using Action = RecordingFeature::Action;
using InternalAction = RecordingFeature::InternalAction;
using DelegateAction = RecordingFeature::DelegateAction;

Action internal(InternalAction action) {
  return Action::internal{std::move(action)};
}

Action didFinishRecordingTranscript() {
  return Action::delegate{DelegateAction::didFinishRecordingTranscript{}};
}

Action recordingError(std::exception_ptr const& error) {
  return internal(InternalAction::recordingError{ErrorObject(error)});
}

/// What the backend does not have yet: `text` without every occurrence of what it has.
std::string delta(std::string const& text, std::optional<SharedText> const& acknowledged) {
  if (!acknowledged || acknowledged->empty()) return text;
  auto const& known = acknowledged->string();
  std::size_t from = 0;
  std::string rest;
  for (auto at = text.find(known); at != std::string::npos; at = text.find(known, from)) {
    rest.append(text, from, at - from);
    from = at + known.size();
  }
  return rest.append(text, from);
}

}  // namespace

std::string RecordingFeature::State::elapsedTimeText() const {
  if (!recording) return "--:--";
  auto const elapsed = std::chrono::system_clock::now() - recording->startDate;
  auto const s = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
  if (s < 3600) return fmt::format("{:02}:{:02}", s / 60, s % 60);
  return fmt::format("{:02}:{:02}:{:02}", s / 3600, s % 3600 / 60, s % 60);
}

std::string RecordingFeature::State::displayedTranscript() const {
  if (!recording) return "--:--";
  auto text = recording->transcript.string();
  if (!recording->tempTranscript) return text;
  if (!text.empty()) text += '\n';
  return text + recording->tempTranscript->string();
}

Effect<Action> RecordingFeature::reduce(State& state, Action const& action) const {
  return match(
      action,
      [&](Action::internal const& internal) { return reduceInternal(state, internal.action); },
      [&](Action::recordButtonClicked) {
        if (state.isLoading || state.isSwitching) return Effect<Action>::none();
        state.isSwitching = true;
        if (!state.recording) {
          return Effect<Action>::run(
              [api = apiClient](Send send) { return startEffect(api, send); });
        }
        return Effect<Action>::run(
            [provider = speechRcognitionProvider, api = apiClient, copy = state](Send send) {
              return stopEffect(provider, api, copy, *copy.recording, send);
            });
      },
      [&](Action::dismissErrorButtonClicked) {
        state.error.reset();
        return Effect<Action>::none();
      },
      [](Action::delegate) { return Effect<Action>::none(); });
}

Effect<Action> RecordingFeature::reduceInternal(State& state, InternalAction const& action) const {
  return match(
      action,
      [&](InternalAction::setIsLoading set) {
        state.isLoading = set.value;
        return Effect<Action>::none();
      },
      [&](InternalAction::startRecording const& start) {
        state.recording = Recording{.startDate = date->generate(), .id = start.transcript.id};
        state.isSwitching = false;
        return Effect<Action>::run([provider = speechRcognitionProvider](Send send) {
                 return recognitionEffect(provider, send);
               })
            .cancellable(CancelID::recording);
      },
      [&](InternalAction::updateTranscript const& update) { return addPiece(state, update.piece); },
      [&](InternalAction::recordingError const& failure) {
        state.error = failure.error;
        return Effect<Action>::none();
      },
      [&](InternalAction::updateLastAppendedTranscript const& update) {
        state.lastAppendedTranscript = update.text;
        return Effect<Action>::none();
      },
      [&](InternalAction::resetState) {
        state.recording.reset();
        state.isLoading = false;
        state.lastAppendedTranscript.reset();
        state.isSwitching = false;
        return Effect<Action>::cancel(CancelID::recording);
      });
}

Effect<Action> RecordingFeature::addPiece(State& state, RecordingTranscript const& piece) const {
  if (!state.recording) return Effect<Action>::send(internal(InternalAction::resetState{}));
  auto& recording = *state.recording;
  if (piece.isPartial) {
    recording.tempTranscript = SharedText(piece.text);
    return Effect<Action>::none();
  }
  auto text = recording.transcript.string();
  if (!text.empty()) text += '\n';
  text += piece.text;
  auto unsent = delta(text, state.lastAppendedTranscript);
  recording.transcript = SharedText(std::move(text));
  recording.tempTranscript.reset();
  return Effect<Action>::run([api = apiClient, unsent = std::move(unsent), id = recording.id,
                              whole = recording.transcript](Send send) {
    return appendEffect(api, unsent, id, whole, send);
  });
}

Task<> RecordingFeature::startEffect(API apiClient, Send send) {
  send(internal(InternalAction::setIsLoading{true}));
  auto created = co_await attempt(apiClient->createTranscript(std::nullopt, std::nullopt));
  if (!created) {
    send(recordingError(created.error()));
    send(internal(InternalAction::resetState{}));
    co_return;
  }
  send(internal(InternalAction::setIsLoading{false}));
  send(internal(InternalAction::startRecording{created.value()}));
}

Task<> RecordingFeature::recognitionEffect(Provider provider, Send send) {
  auto const ended = co_await attempt(forwardPieces(provider, send));
  if (ended) co_return;
  send(recordingError(ended.error()));
  send(internal(InternalAction::resetState{}));
}

Task<> RecordingFeature::forwardPieces(Provider provider, Send send) {
  auto const pieces = co_await provider->startRecording();
  while (auto piece = co_await pieces.next()) {
    send(internal(InternalAction::updateTranscript{std::move(*piece)}));
  }
}

Task<> RecordingFeature::appendEffect(API apiClient, std::string delta, UUID id, SharedText text,
                                      Send send) {
  send(internal(InternalAction::setIsLoading{true}));
  auto const appended = co_await attempt(apiClient->updateTranscript(std::move(delta), id));
  if (appended) {
    send(internal(InternalAction::updateLastAppendedTranscript{text}));
  } else {
    send(recordingError(appended.error()));
  }
  send(internal(InternalAction::setIsLoading{false}));
}

Task<> RecordingFeature::stopEffect(Provider provider, API apiClient, State state,
                                    Recording recording, Send send) {
  auto const stopped = co_await attempt(provider->stopRecording());
  if (!stopped) {
    send(didFinishRecordingTranscript());
    send(internal(InternalAction::resetState{}));
    // Last, so that the error stands after the reset.
    send(recordingError(stopped.error()));
    co_return;
  }
  if (!recording.tempTranscript) {
    send(didFinishRecordingTranscript());
    send(internal(InternalAction::resetState{}));
    co_return;
  }
  SharedText const text(recording.transcript.string() + "\n" + recording.tempTranscript->string());
  send(internal(InternalAction::setIsLoading{true}));
  auto unsent = delta(text.string(), state.lastAppendedTranscript);
  auto const appended =
      co_await attempt(apiClient->updateTranscript(std::move(unsent), recording.id));
  if (appended) {
    send(internal(InternalAction::updateLastAppendedTranscript{text}));
    send(internal(InternalAction::resetState{}));
  } else {
    send(recordingError(appended.error()));
  }
  send(didFinishRecordingTranscript());
  send(internal(InternalAction::resetState{}));
}

}  // namespace vek
