// SPDX-License-Identifier: MIT
#include "views/TranscriptStore.hpp"

#include <utility>

#include "views/Text.hpp"

namespace vek {

using State = TranscriptFeature::State;
using Action = TranscriptFeature::Action;

TranscriptStore::TranscriptStore(Observed::Shared store, QObject* parent)
    : QObject(parent), store_(std::move(store)) {
  store_.notify<[](State const& state) { return state.transcript.textState; }>(
      this, &TranscriptStore::textStateChanged);
}

TextState::Value TranscriptStore::textState() const {
  return vek::textState(transcript().textState);
}

QString TranscriptStore::text() const {
  auto const& state = transcript().textState;
  if (auto const* content = state.as<TranscriptContentState::content>()) {
    return QString::fromStdString(content->text);
  }
  auto const* failure = state.as<TranscriptContentState::error>();
  return failure ? vek::text(failure->object) : QString();
}

void TranscriptStore::transcriptDidAppear() {
  store_.send(Action::transcriptDidAppear{});
}

}  // namespace vek
