// SPDX-License-Identifier: MIT
#pragma once

#include "app/Signals.hpp"
#include "features/SessionFeature.hpp"

namespace vek {

/// What became of one action of a session.
struct SessionRun {
  SessionFeature::State state;
  /// Somebody pressed Ctrl-C, which gave up what was under way.
  bool isInterrupted = false;
  /// The credentials were put into the keychain, or taken out of it.
  bool hasChangedKeychain = false;

  /// Sends the action to a session that has just begun, and waits for all that it starts. Main
  /// thread.
  static SessionRun of(SessionFeature::Action action, Signals& signals);
};

}  // namespace vek
