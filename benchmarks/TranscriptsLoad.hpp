// SPDX-License-Identifier: MIT
#pragma once

#include "features/AppFeature.hpp"
#include "support/LocalServices.hpp"
#include "support/StoredCredentials.hpp"

namespace vek::benchmark {

using AppStore = Store<AppFeature::State, AppFeature::Action>;

/// Local services whose one user has many transcripts, and the deployment of this process with
/// them.
class ManyTranscripts {
 public:
  ManyTranscripts();

  void add(int count) const;

  /// Fetches the bodies that the list fetches, by HTTP alone. Seconds.
  [[nodiscard]] double fetchRaw(AppFeature::State const& loaded) const;

 private:
  test::LocalServices services_;
  test::SignedInProcess user_{services_};
};

/// What one load of the list took.
struct Load {
  double seconds = 0;
  /// Of the main thread's work without a chance for other work, in milliseconds of its time.
  double longestBusy = 0;
  /// The same by the clock on the wall, which goes on while others have the processor.
  double longestWait = 0;
  /// What the memory of the process grew by at most, in MB, and how much of it are the texts.
  double growth = 0;
  double texts = 0;
  /// Transcripts that have their content.
  std::size_t settled = 0;
};

/// From `setUp` until all that it started has ended.
Load loadList(AppStore& store);

/// Milliseconds, at most, until the state of one more opened transcript is ready.
double openTranscripts(AppStore& store);

}  // namespace vek::benchmark
