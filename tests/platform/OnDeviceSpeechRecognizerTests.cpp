// SPDX-License-Identifier: MIT
#include "platform/OnDeviceSpeechRecognizer.hpp"

#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <future>
#include <thread>

#include "platform/Log.hpp"
#include "platform/SpeechModelFiles.hpp"
#include "support/RecognitionRecorder.hpp"
#include "support/ScriptedSpeechModels.hpp"
#include "support/SpeechSamples.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

using namespace vek::test;
using namespace std::chrono_literals;
using testing::HasSubstr;

std::string description(std::exception_ptr const& error) {
  try {
    std::rethrow_exception(error);
  } catch (std::exception const& caught) {
    return caught.what();
  }
}

bool eventually(std::function<bool()> const& condition) {
  for (int attempt = 0; attempt < 1000; ++attempt) {
    if (condition()) return true;
    std::this_thread::sleep_for(5ms);
  }
  return false;
}

/// A recogniser over scripted models, whose loading waits until it is let go.
struct RecognizerTest : testing::Test {
  ~RecognizerTest() override { engine->stop(); }

  std::shared_ptr<SpeechRecognitionTask> start(RecognitionRecorder const& into) {
    return operations.make(Locale("en-US"))
        ->recognitionTask(request, const_cast<RecognitionRecorder&>(into).handler());
  }
  void append(SpokenWords const& spoken) {
    for (auto const& buffer : buffersOf(spoken.samples())) request->appendAudioPCMBuffer(buffer);
  }

  std::promise<void> modelsArrive;
  std::shared_future<void> modelsArrived = modelsArrive.get_future().share();
  std::atomic<int> loads = 0;
  std::atomic<bool> loadFails = false;
  std::atomic<bool> transcriptionFails = false;
  std::shared_ptr<SpeechEngine> engine = std::make_shared<SpeechEngine>(
      [this]() -> std::unique_ptr<SpeechModels> {
        modelsArrived.wait();
        ++loads;
        if (loadFails) throw std::runtime_error("no such models");
        auto models = std::make_unique<ScriptedSpeechModels>();
        models->beforeTranscription = [this](int) {
          if (transcriptionFails) throw std::runtime_error("out of order");
        };
        return models;
      },
      50ms);
  SpeechRecognizerOperations operations = onDeviceSpeechRecognizer(
      {.engine = engine,
       .problem = [] { return std::nullopt; },
       .authorizationStatus = [] { return SpeechRecognizerAuthorizationStatus::authorized; }});
  std::shared_ptr<SpeechAudioBufferRecognitionRequest> request =
      std::make_shared<SpeechAudioBufferRecognitionRequest>();
  RecognitionRecorder recorder;
};

TEST_F(RecognizerTest, AudioThatComesBeforeTheTaskAndWhileModelsLoadIsRecognised) {
  append(SpokenWords().word(1));
  auto const task = start(recorder);
  append(SpokenWords().words(2, 5).silence(1));
  task->finish();
  modelsArrive.set_value();
  ASSERT_TRUE(recorder.waitForEnd());
  EXPECT_THAT(recorder.settledText(), HasSubstr(SpokenWords::text(1, 5)));
}

TEST_F(RecognizerTest, BufferIsHeldUntilItIsRecognisedAndNotLonger) {
  auto buffer = buffersOf(SpokenWords().word(1).samples()).front();
  std::weak_ptr<AudioPCMBuffer const> const held = buffer;
  auto const task = start(recorder);
  request->appendAudioPCMBuffer(std::move(buffer));
  EXPECT_FALSE(held.expired());
  modelsArrive.set_value();
  EXPECT_TRUE(eventually([&] { return held.expired(); }));
}

TEST_F(RecognizerTest, ModelsAreGivenBackWhenUnusedAndATaskGoesOnWithNewOnes) {
  modelsArrive.set_value();
  auto const task = start(recorder);
  append(SpokenWords().words(1, 2));
  std::this_thread::sleep_for(300ms);
  append(SpokenWords().word(3).silence(1));
  ASSERT_TRUE(recorder.waitForSettled());
  EXPECT_EQ(recorder.settledText(), SpokenWords::text(1, 3));
  EXPECT_EQ(loads, 2);
}

TEST_F(RecognizerTest, TaskIsWorkedOffAfterItsHoldersLetGoOfIt) {
  start(recorder)->finish();
  append(SpokenWords().word(1).silence(1));
  request.reset();
  modelsArrive.set_value();
  EXPECT_TRUE(recorder.waitForEnd());
}

TEST_F(RecognizerTest, ResultsOfTwoTasksDoNotMix) {
  modelsArrive.set_value();
  RecognitionRecorder other;
  auto const first = start(recorder);
  append(SpokenWords().words(1, 3));
  request = std::make_shared<SpeechAudioBufferRecognitionRequest>();
  auto const second = start(other);
  append(SpokenWords().words(7, 9));
  first->finish();
  second->finish();
  ASSERT_TRUE(recorder.waitForEnd());
  ASSERT_TRUE(other.waitForEnd());
  EXPECT_EQ(recorder.settledText(), SpokenWords::text(1, 3));
  EXPECT_EQ(other.settledText(), SpokenWords::text(7, 9));
}

TEST_F(RecognizerTest, FailureOfTheModelsEndsTheTaskOnceAndNotTheNextOne) {
  loadFails = true;
  modelsArrive.set_value();
  auto task = start(recorder);
  append(SpokenWords().words(1, 3).silence(1));
  task->finish();
  ASSERT_TRUE(recorder.waitForEnd());
  loadFails = false;

  RecognitionRecorder second;
  request = std::make_shared<SpeechAudioBufferRecognitionRequest>();
  transcriptionFails = true;
  task = start(second);
  append(SpokenWords().words(1, 3).silence(1));
  ASSERT_TRUE(second.waitForEnd());
  transcriptionFails = false;

  RecognitionRecorder third;
  request = std::make_shared<SpeechAudioBufferRecognitionRequest>();
  task = start(third);
  append(SpokenWords().words(1, 3).silence(1));
  ASSERT_TRUE(third.waitForSettled());
  EXPECT_EQ(third.settledText(), SpokenWords::text(1, 3));
  ASSERT_EQ(recorder.entries().size(), 1);
  EXPECT_EQ(description(recorder.entries()[0].error), "no such models");
  EXPECT_EQ(description(second.entries().back().error), "out of order");
}

TEST_F(RecognizerTest, ThereIsARecogniserOfUSEnglishOnly) {
  modelsArrive.set_value();
  EXPECT_EQ(operations.make(Locale("de-DE")), nullptr);
  EXPECT_EQ(operations.supportedLocales(), std::vector{Locale("en-US")});
}

struct InstalledModelsTest : testing::Test {
  [[nodiscard]] bool isAvailable() const { return operations.make(Locale("en-US"))->isAvailable(); }

  TemporaryFolder folder;
  SpeechRecognizerOperations operations =
      onDeviceSpeechRecognizer(installedSpeechParts(folder.path()));
  std::string log;
  LogRedirection redirection{
      [this](LogLevel, std::string_view, std::string_view message) { log += message; },
      LogLevel::error};
};

TEST_F(InstalledModelsTest, OnlyWholeModelsAreAvailableAndTheLogSaysWhatToRun) {
  EXPECT_FALSE(isAvailable());
  EXPECT_THAT(log,
              testing::AllOf(HasSubstr("is missing"), HasSubstr("scripts/install-dependencies")));
  for (auto const& file : SpeechModelFiles::all) {
    std::filesystem::create_symlink(modelsFolder() / file.name, folder / file.name);
  }
  EXPECT_TRUE(isAvailable());

  auto const detector = folder / SpeechModelFiles::detector.name;
  std::filesystem::remove(detector);
  std::filesystem::copy_file(modelsFolder() / SpeechModelFiles::detector.name, detector);
  EXPECT_TRUE(isAvailable());
  std::fstream(detector, std::ios::in | std::ios::out).seekp(1000).write("damage", 6);
  std::filesystem::last_write_time(detector, std::filesystem::file_time_type::clock::now() + 1h);
  EXPECT_FALSE(isAvailable());
  EXPECT_THAT(log, HasSubstr("silero-vad-v5.onnx is damaged"));
  std::filesystem::resize_file(detector, 1000);
  EXPECT_FALSE(isAvailable());
}

TEST(LocaleTest, NamesLanguagesInItsOwn) {
  EXPECT_EQ(Locale("en-US").languageCode(), "en");
  EXPECT_EQ(Locale("").languageCode(), std::nullopt);
  EXPECT_EQ(Locale("en-US").localizedLanguageName("en"), "English");
  EXPECT_EQ(Locale("de-DE").localizedLanguageName("en"), "Englisch");
  EXPECT_EQ(Locale("en-US").localizedLanguageName("qq"), std::nullopt);
}

}  // namespace
}  // namespace vek
