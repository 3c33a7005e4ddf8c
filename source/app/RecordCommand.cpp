// SPDX-License-Identifier: MIT
#include <chrono>
#include <optional>
#include <string>

#include "Clients/RecordingClientImpl.hpp"
#include "Clients/SpeechRecognitionProviderImpl.hpp"
#include "app/Commands.hpp"
#include "app/FileSpeech.hpp"
#include "app/RecordSession.hpp"
#include "features/AppFeature.hpp"
#include "platform/WaveFile.hpp"
#include "platform/WaveFileAudioEngine.hpp"
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

int runRecording(CommandLine::Record const& options, bool asJSON, Terminal& terminal,
                 Signals& signals, WaveFilePlayback const& playback) {
  RecordOutput output(terminal, asJSON);
  if (auto const found = options.file ? problem(*options.file) : std::nullopt) {
    output.error(*found);
    return 1;
  }
  using RecordingState = KeyPath<&AppFeature::State::recording>;
  using RecordingAction = CasePath<AppFeature::Action, AppFeature::Action::recording>;
  auto const store = Store<AppFeature::State, AppFeature::Action>::make(
      AppFeature::State{}, [] { return AppFeature(); });
  store->send(AppFeature::Action::start{});

  RecordSession session(store->scope<RecordingState, RecordingAction>(), output);
  bool isAbandoned = false;
  signals.onSignal([&](int count) {
    if (count == 1) return session.stop();
    isAbandoned = true;
  });
  auto const started = Clock::now();
  auto hasEnded = [&] {
    bool const isTimeUp = options.duration && Clock::now() - started >= *options.duration;
    if (isTimeUp || (options.file && hasBeenSaid(playback, session.isPiecePending()))) {
      session.stop();
    }
    session.advance();
    return isAbandoned || session.isDone();
  };
  MainQueue::shared().runUntil(hasEnded, pollInterval);
  signals.onSignal(nullptr);
  return session.finish() ? 0 : 1;
}

}  // namespace

int record(CommandLine::Record const& options, bool asJSON, Terminal& terminal, Signals& signals) {
  auto const playback = std::make_shared<WaveFilePlayback>();
  return withDependencies(
      [&](DependencyValues& values) {
        if (options.file) {
          auto engine = waveFileAudioEngineFactory(*options.file, WaveFilePace::asTaken, playback);
          values.set(recordingClient, makeRecordingClient(std::move(engine)));
        }
        if (options.provider) {
          values.set(
              speechRcognitionProvider,
              SpeechRecognitionProviderImpl::client(std::make_shared<SpeechRecognitionProviderImpl>(
                  [provider = *options.provider] { return provider; })));
        }
      },
      [&] { return runRecording(options, asJSON, terminal, signals, *playback); });
}

}  // namespace vek
