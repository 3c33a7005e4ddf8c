// SPDX-License-Identifier: MIT
#include "app/TranscriptsSession.hpp"

#include <chrono>
#include <stdexcept>
#include <utility>

#include "records/CaseFolding.hpp"
#include "runtime/MainQueue.hpp"

namespace vek {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds pollInterval(50);

}  // namespace

TranscriptsSession::TranscriptsSession(Signals& signals)
    : signals_(signals), store_(Store<List::State, List::Action>::make({}, [] { return List(); })) {
  signals_.onSignal([this](int) { isInterrupted_ = true; });
}

TranscriptsSession::~TranscriptsSession() {
  signals_.onSignal(nullptr);
}

Subscription TranscriptsSession::onChange(std::function<void(List::State const&)> didChange) {
  return store_->publisher().subscribe({std::move(didChange), [] {}});
}

void TranscriptsSession::loadLists() {
  auto const effects = store_->send(List::Action::setUp{});
  waitUntil([this] { return !state().isLoading; });
  // The fetches of the texts have not begun.
  effects.cancel();
  rethrowError();
}

void TranscriptsSession::loadTexts() {
  settle(List::Action::setUp{});
  rethrowError();
}

void TranscriptsSession::refetch() {
  settle(List::Action::refetchContentButtonClicked{});
}

void TranscriptsSession::rethrowError() const {
  if (state().error) std::rethrow_exception(state().error->error());
}

void TranscriptsSession::wait(std::chrono::duration<double> time,
                              std::function<bool()> const& isOver) {
  auto const end = Clock::now() + std::chrono::duration_cast<Clock::duration>(time);
  waitUntil([&] { return Clock::now() >= end || isOver(); });
}

Transcript const& TranscriptsSession::transcript(UUID id) const {
  if (auto const* found = state().transcripts.find(id)) return *found;
  throw std::runtime_error("There is no transcript " + id.lowerCaseText() + ".");
}

Customer const& TranscriptsSession::customer(std::string const& nameOrID) const {
  auto const id = UUID::parse(nameOrID);
  if (auto const* found = id ? state().customers.find(*id) : nullptr) return *found;
  auto const folded = caseFolded(nameOrID);
  Customer const* found = nullptr;
  for (auto const& customer : state().customers) {
    if (caseFolded(customer.name) != folded) continue;
    if (found) throw std::runtime_error("There is more than one customer '" + nameOrID + "'.");
    found = &customer;
  }
  if (!found) throw std::runtime_error("There is no customer '" + nameOrID + "'.");
  return *found;
}

TranscriptFeature::State const& TranscriptsSession::open(Transcript transcript) {
  auto const id = transcript.id;
  store_->send(List::Action::openTrasnscript{std::move(transcript)});
  return *state().openedTranscripts.find(id);
}

void TranscriptsSession::close(UUID id) {
  store_->send(List::Action::closeTranscript{id});
}

TranscriptFeature::State const& TranscriptsSession::send(UUID id, Opened::Action action) {
  using Element = IdentifiedAction<UUID, Opened::Action>::element;
  settle(List::Action::transcript{Element{id, std::move(action)}});
  return *state().openedTranscripts.find(id);
}

void TranscriptsSession::settle(List::Action action) {
  auto const effects = store_->send(std::move(action));
  waitUntil([&] { return !effects || effects.tasks()->isDone(); });
}

void TranscriptsSession::waitUntil(std::function<bool()> const& isDone) {
  MainQueue::shared().runUntil([&] { return isInterrupted_ || isDone(); }, pollInterval);
  if (isInterrupted_) throw Interrupted();
}

}  // namespace vek
