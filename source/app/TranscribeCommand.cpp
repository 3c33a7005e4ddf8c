// SPDX-License-Identifier: MIT
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <chrono>
#include <optional>

#include "Clients/LocalSpeechRecognitionClient.hpp"
#include "app/Commands.hpp"
#include "app/FileSpeech.hpp"
#include "platform/WaveFile.hpp"
#include "records/RecordingTranscript.hpp"
#include "runtime/Environment.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/MainQueue.hpp"
#include "runtime/TaskHandle.hpp"

namespace vek {

namespace {

constexpr std::chrono::milliseconds pollInterval(20);

/// What is known of one file while it is played.
struct Progress {
  std::string text;
  bool isPiecePending = false;
  bool hasEnded = false;
  std::optional<ErrorObject> error;
};

Task<> followPieces(LocalSpeechRecognitionClient client, Progress& progress) {
  auto const pieces = co_await client.startRecording();
  while (auto const piece = co_await pieces.next()) {
    progress.isPiecePending = piece->isPartial;
    if (piece->isPartial || piece->text.empty()) continue;
    if (!progress.text.empty()) progress.text += ' ';
    progress.text += piece->text;
  }
}

Task<> follow(LocalSpeechRecognitionClient client, Progress& progress) {
  auto const outcome = co_await attempt(followPieces(std::move(client), progress));
  if (!outcome) progress.error.emplace(outcome.error());
  progress.hasEnded = true;
}

Task<> stop(LocalSpeechRecognitionClient client) {
  co_await client.stopRecording();
}

/// The text of one file; throws when it cannot be had.
std::string textOf(std::filesystem::path const& file, Terminal& terminal, bool const& isAbandoned) {
  // Read first for its own error: what an engine says of a failed start is the recogniser's to
  // tell.
  WaveFile const readable(file);
  auto const playback = std::make_shared<WaveFilePlayback>();
  return withDependencies(
      [&](DependencyValues& values) {
        playFile(file, RecognitionProvider::apple, playback, values);
      },
      [&] {
        LocalSpeechRecognitionClient const client =
            *DependencyValues::current()[localSpeechRecognitionClient];
        Progress progress;
        auto& main = MainQueue::shared();
        spawn(main, follow(client, progress));
        auto isOver = [&] {
          auto const percent = playback->duration().count() > 0
                                   ? 100 * playback->played() / playback->duration()
                                   : 0;
          terminal.showChanging(std::to_string(percent) + "%", progress.text);
          return isAbandoned || progress.hasEnded ||
                 hasBeenSaid(*playback, {.recogniser = RecognitionProvider::apple,
                                         .isPiecePending = progress.isPiecePending,
                                         .hasPieces = !progress.text.empty()});
        };
        main.runUntil(isOver, pollInterval);
        auto const stopping = spawn(main, stop(client));
        main.runUntil([&] { return stopping.isDone() && progress.hasEnded; }, pollInterval);
        if (progress.error) std::rethrow_exception(progress.error->error());
        return progress.text;
      });
}

}  // namespace

int transcribe(CommandLine::Transcribe const& options, bool asJSON, Terminal& terminal,
               Signals& signals) {
  bool isAbandoned = false;
  signals.onSignal([&](int) { isAbandoned = true; });
  int status = 0;
  for (auto const& file : options.files) {
    auto const printObject = [&](std::string_view key, std::string_view value) {
      terminal.printLine(
          boost::json::serialize(boost::json::object{{"file", file.string()}, {key, value}}));
    };
    auto const report = [&](std::string const& message) {
      if (asJSON) printObject("error", message);
      terminal.printError(message);
      status = 1;
    };
    try {
      auto const text = textOf(file, terminal, isAbandoned);
      if (isAbandoned) return 1;
      if (asJSON) {
        printObject("text", text);
      } else {
        terminal.printLine(text);
      }
    } catch (WaveFileError const& error) {
      report(error.what());
    } catch (std::exception const& error) {
      report(file.string() + ": " + error.what());
    }
    if (isAbandoned) return 1;
  }
  return status;
}

}  // namespace vek
