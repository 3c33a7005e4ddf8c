// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <stdexcept>
#include <thread>

#include "Clients/LocalSpeechRecognitionClientImpl.hpp"
#include "Clients/LocalSpeechRecognitionError.hpp"
#include "Clients/RecorderError.hpp"
#include "runtime/SyncWait.hpp"
#include "support/Journal.hpp"
#include "support/PieceReader.hpp"

namespace vek {
namespace {

using Status = SpeechRecognizerAuthorizationStatus;
using Buffer = std::shared_ptr<AudioPCMBuffer const>;
using test::eventually;
using test::Journal;
using Reader = test::PieceReader;
using testing::ElementsAre;

struct ScriptedTask : SpeechRecognitionTask {
  explicit ScriptedTask(std::shared_ptr<Journal> entries) : journal(std::move(entries)) {}
  void finish() override { journal->add("finish"); }
  std::shared_ptr<Journal> journal;
};

struct ScriptedRecognizer : SpeechRecognizer {
  explicit ScriptedRecognizer(std::shared_ptr<Journal> entries) : journal(std::move(entries)) {}

  [[nodiscard]] bool isAvailable() const override { return available; }
  std::shared_ptr<SpeechRecognitionTask> recognitionTask(
      std::shared_ptr<SpeechAudioBufferRecognitionRequest> const& request,
      SpeechRecognitionResultHandler resultHandler) override {
    request->setReceiver([journal = journal](Buffer const& buffer) {
      journal->add("buffer of " + std::to_string(buffer->frameLength()));
    });
    journal->add(request->requiresOnDeviceRecognition() ? "task on device" : "task anywhere");
    std::lock_guard const lock(mutex);
    handlers.push_back(std::move(resultHandler));
    return std::make_shared<ScriptedTask>(journal);
  }
  [[nodiscard]] SpeechRecognitionResultHandler handler(std::size_t index) const {
    std::lock_guard const lock(mutex);
    return handlers.at(index);
  }

  std::shared_ptr<Journal> journal;
  bool available = true;
  mutable std::mutex mutex;
  std::vector<SpeechRecognitionResultHandler> handlers;
};

SpeechRecognitionResult partial(std::string text) {
  return {{std::move(text)}, false, std::nullopt};
}
SpeechRecognitionResult settled(std::string text) {
  return {{std::move(text)}, false, SpeechRecognitionMetadata{}};
}
SpeechRecognitionResult final(std::string text) {
  return {{std::move(text)}, true, SpeechRecognitionMetadata{}};
}
std::exception_ptr failure(char const* text) {
  return std::make_exception_ptr(std::runtime_error(text));
}

struct LocalClientTest : testing::Test {
  /// Lets every audio task come to its end.
  ~LocalClientTest() override {
    syncWait(client.stopRecording());
    for (auto const& each : allBuffers) each.finish();
    EXPECT_TRUE(eventually([this] {
      return std::ranges::all_of(allBuffers, [](auto const& each) { return each.isAbandoned(); });
    }));
  }

  LocalSpeechRecognitionClient makeClient() {
    RecordingClient const microphone{
        .startRecording =
            [this] {
              if (beforeMicrophone) beforeMicrophone();
              auto ends = RecordingClient::Buffers::makeStream();
              buffers = ends.continuation;
              allBuffers.push_back(buffers);
              journal->add("microphone on");
              return std::move(ends.stream);
            },
        .stopRecording = [journal = journal] { journal->add("microphone off"); }};
    return withDependencies(
        [&](DependencyValues& values) {
          values.set(recordingClient, microphone);
          values.set(locale, std::make_shared<Locale const>("de-DE"));
        },
        [this] {
          return makeLocalSpeechRecognitionClient(
              {.authorizationStatus = [this] { return status; },
               .requestAuthorization =
                   [this](std::function<void(Status)> const& answer) { answer(status); },
               .supportedLocales = [this] { return locales; },
               .make = [this](Locale const& wanted) -> std::shared_ptr<SpeechRecognizer> {
                 journal->add("recognizer for " + wanted.identifier());
                 return recognizer;
               }});
        });
  }

  /// Starts a recording and waits until the microphone is on for the `count`th time.
  std::unique_ptr<Reader> start(std::ptrdiff_t count = 1) {
    auto reader = std::make_unique<Reader>(syncWait(client.startRecording()));
    EXPECT_TRUE(eventually([&] { return journal->count("microphone on") == count; }));
    return reader;
  }

  std::string startError() {
    try {
      syncWait(client.startRecording());
    } catch (RecorderError const& error) {
      return std::string(error.rawValue());
    }
    return "none";
  }

  std::shared_ptr<Journal> journal = std::make_shared<Journal>();
  std::shared_ptr<Journal> log = std::make_shared<Journal>();
  LogRedirection redirection{
      [log = log](LogLevel level, std::string_view category, std::string_view message) {
        log->add(std::string(name(level)) + ' ' + std::string(category) + ": " +
                 std::string(message));
      },
      LogLevel::debug};
  Status status = Status::authorized;
  std::vector<Locale> locales;
  std::shared_ptr<ScriptedRecognizer> recognizer = std::make_shared<ScriptedRecognizer>(journal);
  std::function<void()> beforeMicrophone;
  StreamContinuation<Buffer> buffers;
  std::vector<StreamContinuation<Buffer>> allBuffers;
  LocalSpeechRecognitionClient client = makeClient();
};

TEST_F(LocalClientTest, EachReasonNotToStartHasItsErrorAndItsLog) {
  status = Status::restricted;
  EXPECT_EQ(startError(), "noAuthorization");
  EXPECT_TRUE(journal->entries().empty());
  status = Status::authorized;
  recognizer->available = false;
  EXPECT_EQ(startError(), "notAvailable");
  recognizer = nullptr;
  EXPECT_EQ(startError(), "recognizerFailure");
  EXPECT_THAT(log->entries(),
              ElementsAre("error local recorder: Speech recognizer not available.",
                          "error local recorder: Speech recognizer not available.",
                          "error local recorder: Can not initialize speech recognizer."));
  EXPECT_FALSE(journal->contains("microphone on"));
}

TEST_F(LocalClientTest, BuffersGoToATaskOnTheDeviceInTheirOrder) {
  auto const reader = start();
  AudioFormat const format(AudioCommonFormat::pcmFormatInt16, 48000, 1, true);
  for (std::size_t const frames : {3U, 1U, 2U}) {
    buffers.yield(
        std::make_shared<AudioPCMBuffer const>(format, std::vector<std::int16_t>(frames)));
  }
  EXPECT_TRUE(eventually([&] { return journal->contains("buffer of 2"); }));
  EXPECT_THAT(journal->entries(),
              ElementsAre("recognizer for en-US", "task on device", "microphone on", "buffer of 3",
                          "buffer of 1", "buffer of 2"));
}

TEST_F(LocalClientTest, ResultsBecomePiecesAndTheFinalOneEndsTheStream) {
  auto const reader = start();
  auto const handler = recognizer->handler(0);
  handler(std::nullopt, nullptr);
  handler(partial("one"), nullptr);
  handler(settled("one two"), nullptr);
  handler(partial("three"), failure("ignored"));
  EXPECT_THAT(reader->read(), ElementsAre("one...", "one two", "three..."));
  EXPECT_TRUE(log->entries().empty());
  handler(final("three four"), nullptr);
  EXPECT_THAT(reader->read(), ElementsAre("one...", "one two", "three...", "three four", "end"));
  EXPECT_THAT(log->entries(), ElementsAre("notice local recorder: Final recognition result"));
}

TEST_F(LocalClientTest, ErrorIsLoggedAndEndsTheStreamAfterTheFinalText) {
  auto const reader = start();
  recognizer->handler(0)(final("last words"), failure("broken"));
  EXPECT_THAT(reader->read(), ElementsAre("last words", "broken"));
  EXPECT_THAT(log->entries(), ElementsAre("notice local recorder: Final recognition result",
                                          "error local recorder: Recognition error: broken"));
}

TEST_F(LocalClientTest, ErrorWithoutResultEndsTheStream) {
  auto const reader = start();
  recognizer->handler(0)(std::nullopt, failure("broken"));
  EXPECT_THAT(reader->read(), ElementsAre("broken"));
}

TEST_F(LocalClientTest, StopFinishesTheTaskEndsTheStreamAndTurnsTheMicrophoneOff) {
  auto const reader = start();
  auto const handler = recognizer->handler(0);
  handler(partial("pending"), nullptr);
  syncWait(client.stopRecording());
  handler(final("too late"), nullptr);
  EXPECT_THAT(reader->read(), ElementsAre("pending...", "end"));
  EXPECT_THAT(journal->entries(), ElementsAre("recognizer for en-US", "task on device",
                                              "microphone on", "finish", "microphone off"));
  EXPECT_TRUE(eventually([&] { return buffers.isAbandoned(); })) << "the audio task still reads";

  syncWait(client.stopRecording());
  EXPECT_EQ(journal->count("finish"), 1);
}

TEST_F(LocalClientTest, FailureOfTheMicrophoneEndsTheStreamAndItsEndDoesNot) {
  auto reader = start();
  buffers.finish(failure("unplugged"));
  EXPECT_TRUE(eventually([&] { return !reader->read().empty(); }));
  EXPECT_THAT(reader->read(), ElementsAre("unplugged"));

  reader = start(2);
  buffers.finish();
  EXPECT_TRUE(eventually([&] { return buffers.isAbandoned(); }));
  recognizer->handler(1)(partial("still open"), nullptr);
  EXPECT_THAT(reader->read(), ElementsAre("still open..."));
}

TEST_F(LocalClientTest, SecondStartLeavesTheFirstTaskWithoutAReader) {
  auto const first = start();
  auto const second = start(2);
  recognizer->handler(0)(final("old"), nullptr);
  recognizer->handler(1)(partial("new"), nullptr);
  EXPECT_TRUE(first->read().empty());
  EXPECT_THAT(second->read(), ElementsAre("new..."));
}

TEST_F(LocalClientTest, StopWhileTheMicrophoneStartsDoesNotLeaveItOn) {
  beforeMicrophone = [this] {
    syncWait(client.stopRecording());
    beforeMicrophone = nullptr;
  };
  auto const reader = start();
  EXPECT_TRUE(eventually([&] { return journal->entries().back() == "microphone off"; }));
  EXPECT_THAT(reader->read(), ElementsAre("end"));
}

TEST_F(LocalClientTest, ResultsThatComeDuringAStopDoNoHarm) {
  for (int round = 0; round < 50; ++round) {
    auto const reader = start(round + 1);
    auto const handler = recognizer->handler(static_cast<std::size_t>(round));
    std::thread results([&] {
      for (int number = 0; number < 20; ++number) handler(partial("piece"), nullptr);
      handler(final("last"), nullptr);
    });
    syncWait(client.stopRecording());
    results.join();
    ASSERT_EQ(std::ranges::count(reader->read(), "end"), 1);
    ASSERT_EQ(reader->read().back(), "end");
  }
}

TEST_F(LocalClientTest, OnlyADeniedPermissionIsAnError) {
  for (Status const each : {Status::notDetermined, Status::restricted, Status::authorized}) {
    status = each;
    EXPECT_EQ(syncWait(client.hasPermission()), each == Status::authorized);
    EXPECT_EQ(syncWait(client.requestPermission()), each == Status::authorized);
  }
  status = Status::denied;
  EXPECT_FALSE(syncWait(client.hasPermission()));
  try {
    syncWait(client.requestPermission());
    FAIL() << "no error";
  } catch (LocalSpeechRecognitionError const& error) {
    EXPECT_STREQ(error.what(),
                 "Authorization denied. \nOpen System Settings > Privacy & Security > Speech "
                 "Recognition and enable it.");
  }
}

TEST_F(LocalClientTest, LanguagesAreNamedInTheUsersLanguageInTheirOrder) {
  locales = {Locale("en-US"), Locale(""), Locale("de-AT"), Locale("qq-US"), Locale("en-GB")};
  EXPECT_THAT(syncWait(client.availableLanguages()),
              ElementsAre("Englisch", "Deutsch", "Englisch"));
}

}  // namespace
}  // namespace vek
