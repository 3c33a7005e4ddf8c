// SPDX-License-Identifier: MIT
#include <chrono>
#include <optional>
#include <string>

#include "Clients/SpeechRecognitionProviderImpl.hpp"
#include "app/Commands.hpp"
#include "app/FileSpeech.hpp"
#include "app/RecordSession.hpp"
#include "features/PermissionsFeature.hpp"
#include "platform/WaveFile.hpp"
#include "runtime/MainQueue.hpp"

namespace vek {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds pollInterval(50);

/// What is wrong with the file, if anything: nothing is to begin with one that cannot be played.
std::optional<std::string> problem(std::filesystem::path const& file) {
  try {
    WaveFile const readable(file);
    return std::nullopt;
  } catch (WaveFileError const& error) {
    return error.what();
  }
}

/// Looks whether recording is permitted and asks if not, as the program's start and its button do.
/// Tells what stands against it.
bool isPermitted(RecordOutput& output, bool const& isAbandoned) {
  using Action = PermissionsFeature::Action;
  auto const store = Store<PermissionsFeature::State, Action>::make(
      PermissionsFeature::State{}, [] { return PermissionsFeature(); });
  auto const run = [&](Action action) {
    auto const effects = store->send(std::move(action));
    MainQueue::shared().runUntil([&] { return isAbandoned || effects.tasks()->isDone(); },
                                 pollInterval);
  };
  run(Action::setUp{});
  if (!store->state().hasRecordingPermissions) run(Action::requestPermissionsClicked{});
  auto const& [isLoading, isGranted, error, identity] = store->state();
  if (error) {
    output.error(error->localizedDescription());
  } else if (!isGranted && !isAbandoned) {
    output.error("Recording is not permitted.");
  }
  return isGranted;
}

int runRecording(CommandLine::Record const& options, RecognitionProvider recogniser, bool asJSON,
                 Terminal& terminal, Signals& signals, WaveFilePlayback const& playback) {
  RecordOutput output(terminal, asJSON);
  if (auto const found = options.file ? problem(*options.file) : std::nullopt) {
    output.error(*found);
    return 1;
  }
  bool isAbandoned = false;
  std::optional<RecordSession> session;
  signals.onSignal([&](int count) {
    if (session && count == 1) return session->stop();
    isAbandoned = true;
  });
  if (!isPermitted(output, isAbandoned)) return 1;

  // Without the list of the root: to fetch it all for one recording would be a waste.
  session.emplace(RecordSession::RecordingStore::make(RecordingFeature::State{},
                                                      [] { return RecordingFeature(); }),
                  output);
  auto const started = Clock::now();
  auto hasEnded = [&] {
    bool const isTimeUp = options.duration && Clock::now() - started >= *options.duration;
    FileText const text{recogniser, session->isPiecePending(), session->hasPieces()};
    if (isTimeUp || (options.file && hasBeenSaid(playback, text))) {
      session->stop();
    }
    session->advance();
    return isAbandoned || session->isDone();
  };
  MainQueue::shared().runUntil(hasEnded, pollInterval);
  signals.onSignal(nullptr);
  return session->finish() ? 0 : 1;
}

}  // namespace

int record(CommandLine::Record const& options, bool asJSON, Terminal& terminal, Signals& signals) {
  auto const playback = std::make_shared<WaveFilePlayback>();
  auto const recogniser = options.provider.value_or(recognitionProviderSetting());
  return withDependencies(
      [&](DependencyValues& values) {
        if (options.file) playFile(*options.file, recogniser, playback, values);
        if (options.provider) {
          values.set(
              speechRcognitionProvider,
              SpeechRecognitionProviderImpl::client(std::make_shared<SpeechRecognitionProviderImpl>(
                  [provider = *options.provider] { return provider; })));
        }
      },
      [&] { return runRecording(options, recogniser, asJSON, terminal, signals, *playback); });
}

}  // namespace vek
