// SPDX-License-Identifier: MIT
#include "app/FileSpeech.hpp"

#include <chrono>
#include <utility>

#include "Clients/LocalSpeechRecognitionClientImpl.hpp"
#include "Clients/RecordingClientImpl.hpp"
#include "Clients/RemoteSpeechRecognitionClient.hpp"
#include "platform/OnDeviceSpeechRecognizer.hpp"
#include "platform/WaveFileAudioEngine.hpp"

namespace vek {

namespace {

/// The recogniser on this machine, which then needs nobody's permission.
LocalSpeechRecognitionClient localClient() {
  using Status = SpeechRecognizerAuthorizationStatus;
  auto recognizer = sharedSpeechRecognizer();
  recognizer.authorizationStatus = [] { return Status::authorized; };
  recognizer.requestAuthorization = [](std::function<void(Status)> const& answer) {
    answer(Status::authorized);
  };
  return makeLocalSpeechRecognitionClient(std::move(recognizer));
}

Task<bool> permitted() {
  co_return true;
}

/// A hosted one likewise.
RemoteSpeechRecognitionClient remoteClient() {
  auto client = RemoteSpeechRecognitionClientKey::liveValue();
  client.hasPermission = permitted;
  client.requestPermission = permitted;
  return client;
}

}  // namespace

void playFile(std::filesystem::path const& file, RecognitionProvider recogniser,
              std::shared_ptr<WaveFilePlayback> const& playback, DependencyValues& values) {
  bool const isHosted = recogniser != RecognitionProvider::apple;
  // What has been sent over a network may still lie in it by the minute.
  auto const pace = isHosted ? WaveFilePace::realTime : WaveFilePace::asTaken;
  auto engine = waveFileAudioEngineFactory(file, pace, playback);
  values.set(recordingClient, makeRecordingClient(std::move(engine)));
  // The client is made with these values in force, so that it hears the file.
  withDependencies([&](DependencyValues& current) { current = values; },
                   [&] {
                     if (isHosted) {
                       values.set(remoteSpeechRecognitionClient, remoteClient());
                     } else {
                       values.set(localSpeechRecognitionClient, localClient());
                     }
                   });
}

bool hasBeenSaid(WaveFilePlayback const& playback, FileText const& text) {
  using std::chrono_literals::operator""s;
  bool const isHosted = text.recogniser != RecognitionProvider::apple;
  // Twice the pause that settles a piece, and the time that it may be on its way; and more than any
  // recogniser takes to give a piece up, or to begin.
  auto const settles = isHosted ? 4s : 2s;
  constexpr auto givesUp = 15s;
  bool const isTextDue = text.isPiecePending || (isHosted && !text.hasPieces);
  return playback.hasPlayedFile() && playback.silencePlayed() >= (isTextDue ? givesUp : settles);
}

}  // namespace vek
