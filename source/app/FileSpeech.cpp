// SPDX-License-Identifier: MIT
#include "app/FileSpeech.hpp"

#include <chrono>
#include <utility>

#include "Clients/LocalSpeechRecognitionClientImpl.hpp"
#include "Clients/RecordingClientImpl.hpp"
#include "platform/OnDeviceSpeechRecognizer.hpp"
#include "platform/WaveFileAudioEngine.hpp"

namespace vek {

void playFile(std::filesystem::path const& file, std::shared_ptr<WaveFilePlayback> const& playback,
              DependencyValues& values) {
  using Status = SpeechRecognizerAuthorizationStatus;
  auto engine = waveFileAudioEngineFactory(file, WaveFilePace::asTaken, playback);
  values.set(recordingClient, makeRecordingClient(std::move(engine)));
  auto recognizer = sharedSpeechRecognizer();
  recognizer.authorizationStatus = [] { return Status::authorized; };
  recognizer.requestAuthorization = [](std::function<void(Status)> const& answer) {
    answer(Status::authorized);
  };
  // Made with these values in force, so that it hears the file.
  auto const client =
      withDependencies([&](DependencyValues& current) { current = values; },
                       [&] { return makeLocalSpeechRecognitionClient(std::move(recognizer)); });
  values.set(localSpeechRecognitionClient, client);
}

bool hasBeenSaid(WaveFilePlayback const& playback, bool isPiecePending) {
  using std::chrono_literals::operator""s;
  // Twice the pause that settles a piece, and more than any recogniser takes to give one up.
  constexpr auto settles = 2s;
  constexpr auto givesUp = 15s;
  return playback.hasPlayedFile() &&
         playback.silencePlayed() >= (isPiecePending ? givesUp : settles);
}

}  // namespace vek
