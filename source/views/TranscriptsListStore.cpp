// SPDX-License-Identifier: MIT
#include "views/TranscriptsListStore.hpp"

#include <utility>

#include "views/Text.hpp"

namespace vek {

using State = TranscriptsListFeature::State;
using Action = TranscriptsListFeature::Action;

TranscriptsListStore::TranscriptsListStore(Observed::Shared store) : store_(std::move(store)) {
  store_.notify<&State::isLoading>(this, &TranscriptsListStore::isLoadingChanged);
  store_.notify<&State::error>(this, &TranscriptsListStore::errorChanged);
  store_.notify<&State::customers>(this, &TranscriptsListStore::customersChanged);
  store_.notify<&State::transcripts>(this, &TranscriptsListStore::transcriptsChanged);
  store_.notify<[](State const& state) { return state.transcripts.empty(); }>(
      this, &TranscriptsListStore::isEmptyChanged);
}

QString TranscriptsListStore::error() const {
  return text(state().error);
}

QString TranscriptsListStore::customerName(QString const& identifier) const {
  auto const id = UUID::parse(identifier.toStdString());
  auto const* known = id ? state().customers.find(*id) : nullptr;
  return known ? QString::fromStdString(known->name) : identifier;
}

void TranscriptsListStore::openTrasnscript(int row) {
  store_.send(Action::openTrasnscript{state().transcripts[static_cast<std::size_t>(row)]});
}

void TranscriptsListStore::refetchContentButtonClicked() {
  store_.send(Action::refetchContentButtonClicked{});
}

void TranscriptsListStore::customersChanged() {
  transcripts_.namesChanged();
}

void TranscriptsListStore::transcriptsChanged() {
  auto const& transcripts = state().transcripts;
  transcripts_.setList(transcripts);
  int count = unassignedCount_;
  auto const isUnassigned = [](Transcripts const& list, std::size_t position) {
    return position < list.size() && !list[position].customerID ? 1 : 0;
  };
  transcripts.forEachDifference(counted_, [&](std::size_t position) {
    count += isUnassigned(transcripts, position) - isUnassigned(counted_, position);
  });
  counted_ = transcripts;
  if (std::exchange(unassignedCount_, count) != count) Q_EMIT unassignedCountChanged();
}

}  // namespace vek
