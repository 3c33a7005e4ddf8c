// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <string>

#include "app/Signals.hpp"
#include "features/TranscriptsListFeature.hpp"
#include "runtime/Store.hpp"

namespace vek {

/// Somebody pressed Ctrl-C.
struct Interrupted : std::exception {};

/// The list of transcripts in the hands of a program without a screen, which sends its actions and
/// waits for what they start. A wait ends with `Interrupted` when a signal comes. Main thread.
class TranscriptsSession {
 public:
  using List = TranscriptsListFeature;
  using Opened = TranscriptFeature;

  explicit TranscriptsSession(Signals& signals);
  TranscriptsSession(TranscriptsSession const&) = delete;
  TranscriptsSession& operator=(TranscriptsSession const&) = delete;
  ~TranscriptsSession();

  [[nodiscard]] List::State const& state() const { return store_->state(); }
  /// Called with the state now and after each change, for as long as the subscription is held.
  [[nodiscard]] Subscription onChange(std::function<void(List::State const&)> didChange);

  /// Fetches customers and transcripts, but no texts. Throws what it fails with.
  void loadLists();
  /// Fetches the texts too; a failure of one is in its transcript. Throws as `loadLists` does.
  void loadTexts();
  /// Fetches all anew. What that fails with is in the state.
  void refetch();
  /// Lets time pass, unless something is over before.
  void wait(std::chrono::duration<double> time, std::function<bool()> const& isOver);

  /// Of the list. Throws when it has none of that identifier.
  [[nodiscard]] Transcript const& transcript(UUID id) const;
  /// By its identifier or, in upper or lower case, its name. Throws when that is not one customer.
  [[nodiscard]] Customer const& customer(std::string const& nameOrID) const;

  /// Opens a transcript and gives what is open under its identifier.
  Opened::State const& open(Transcript transcript);
  void close(UUID id);
  /// Sends an action of an open transcript and waits for what that starts.
  Opened::State const& send(UUID id, Opened::Action action);

 private:
  /// Sends an action and waits for what it starts.
  void settle(List::Action action);
  void waitUntil(std::function<bool()> const& isDone);
  void rethrowError() const;

  Signals& signals_;
  bool isInterrupted_ = false;
  Store<List::State, List::Action>::Shared store_;
};

}  // namespace vek
