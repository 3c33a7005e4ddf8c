// SPDX-License-Identifier: MIT
#include "features/TranscriptFeature.hpp"

#include <utility>

#include "records/TranscriptContent.hpp"
#include "runtime/Match.hpp"

namespace vek {

namespace {

using Action = TranscriptFeature::Action;
using InternalAction = TranscriptFeature::InternalAction;
using DelegateAction = TranscriptFeature::DelegateAction;
using ContentState = TranscriptContentState;

Action internal(InternalAction action) {
  return Action::internal{std::move(action)};
}

Action didUpdate(Transcript transcript) {
  return internal(
      InternalAction::delegate{DelegateAction::didUpdateTranscript{std::move(transcript)}});
}

Effect<Action> tellTheList(TranscriptFeature::State const& state) {
  return Effect<Action>::send(didUpdate(state.transcript));
}

Action updateText(ContentState state) {
  return internal(InternalAction::updateTranscriptText{std::move(state)});
}

Action updateAnalysis(ContentState state) {
  return internal(InternalAction::updateTranscriptAnalysis{std::move(state)});
}

}  // namespace

Effect<Action> TranscriptFeature::reduce(State& state, Action const& action) const {
  return match(
      action,
      [&](Action::customerPickerClicked const& picked) {
        state.selectedCustomer = picked.customer;
        return Effect<Action>::none();
      },
      [&](Action::internal const& internal) { return reduceInternal(state, internal.action); },
      [&](Action::transcriptDidAppear) { return reduceAppearance(state); },
      [&](Action::refetchContentButtonClicked) { return reduceRefetch(state); },
      [&](Action::assignCustomerButtonClicked) { return reduceAssignment(state); });
}

/// Asks for an analysis where there is a text and the stored analysis is missing.
Effect<Action> TranscriptFeature::reduceAppearance(State& state) const {
  auto& analysis = state.transcript.analysisState;
  if (analysis.as<ContentState::content>() || analysis.as<ContentState::loading>()) {
    return Effect<Action>::none();
  }
  auto const* content = state.transcript.textState.as<ContentState::content>();
  if (!content || content->text.empty()) return Effect<Action>::none();
  analysis = ContentState::loading{};
  return Effect<Action>::run([api = apiClient, text = content->text](Send send) {
    return analysisEffect(api, text, send);
  });
}

Effect<Action> TranscriptFeature::reduceRefetch(State& state) const {
  state.error.reset();
  auto& transcript = state.transcript;
  if (!transcript.textState.as<ContentState::content>()) {
    transcript.textState = ContentState::loading{};
  }
  transcript.analysisState = ContentState::loading{};
  return Effect<Action>::run(
      [api = apiClient, transcript](Send send) { return refetchEffect(api, transcript, send); });
}

/// A customer is assigned once and not replaced.
Effect<Action> TranscriptFeature::reduceAssignment(State& state) const {
  if (!state.selectedCustomer || state.transcript.customerID) return Effect<Action>::none();
  state.assigningCustomer = true;
  state.error.reset();
  return Effect<Action>::run(
      [api = apiClient, customer = state.selectedCustomer->id, id = state.id()](Send send) {
        return assignmentEffect(api, customer, id, send);
      });
}

Effect<Action> TranscriptFeature::reduceInternal(State& state, InternalAction const& action) {
  return match(
      action,
      [&](InternalAction::updateTranscriptAnalysis const& update) {
        state.transcript.analysisState = update.state;
        return tellTheList(state);
      },
      [&](InternalAction::updateTranscriptText const& update) {
        state.transcript.textState = update.state;
        return tellTheList(state);
      },
      [&](InternalAction::didAssignCustomer const& assigned) {
        state.assigningCustomer = false;
        state.transcript.customerID = assigned.customerID;
        return tellTheList(state);
      },
      [&](InternalAction::setError const& set) {
        state.error = set.error;
        return Effect<Action>::none();
      },
      [&](InternalAction::setAssigningCustomer set) {
        state.assigningCustomer = set.value;
        return Effect<Action>::none();
      },
      [](InternalAction::delegate const&) { return Effect<Action>::none(); });
}

Task<> TranscriptFeature::analysisEffect(API apiClient, SharedText text, Send send) {
  auto analysis = co_await attempt(apiClient->getTranscriptAnalysis(text.string()));
  if (analysis) {
    send(updateAnalysis(ContentState::content{std::move(analysis).value()}));
  } else {
    send(updateAnalysis(ContentState::error{ErrorObject(analysis.error())}));
  }
}

Task<> TranscriptFeature::refetchEffect(API apiClient, Transcript transcript, Send send) {
  // The list shows that it loads.
  send(didUpdate(transcript));
  auto answer = co_await attempt(apiClient->getTranscriptContent(transcript.id));
  bool const hadText = transcript.textState.as<ContentState::content>() != nullptr;
  if (answer) {
    transcript.setContent(TranscriptContent::from(std::move(answer).value()));
    send(updateText(transcript.textState));
    send(updateAnalysis(transcript.analysisState));
  } else {
    ContentState const failure = ContentState::error{ErrorObject(answer.error())};
    // A text that was there stays.
    if (!hadText) send(updateText(failure));
    send(updateAnalysis(failure));
  }
}

Task<> TranscriptFeature::assignmentEffect(API apiClient, UUID customer, UUID transcript,
                                           Send send) {
  auto const assigned = co_await attempt(apiClient->completeTranscript(customer, transcript));
  if (assigned) {
    send(internal(InternalAction::didAssignCustomer{customer}));
  } else {
    send(internal(InternalAction::setAssigningCustomer{false}));
    send(internal(InternalAction::setError{ErrorObject(assigned.error())}));
  }
}

}  // namespace vek
