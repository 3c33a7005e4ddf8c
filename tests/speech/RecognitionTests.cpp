// SPDX-License-Identifier: MIT
// The recogniser over its real models: these tests fail where the models are not installed.
#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <numbers>
#include <random>

#include "platform/OnDeviceSpeechRecognizer.hpp"
#include "platform/OnnxRuntime.hpp"
#include "platform/SpeechModelFiles.hpp"
#include "support/RecognitionRecorder.hpp"
#include "support/SpeechSamples.hpp"
#include "support/WordErrors.hpp"

namespace vek {
namespace {

using namespace vek::test;
using testing::AllOf;
using testing::HasSubstr;
using Samples = std::vector<std::int16_t>;

struct RecognitionTest : testing::Test {
  static void SetUpTestSuite() {
    parts = new OnDeviceSpeechParts(installedSpeechParts(modelsFolder()));
  }
  static void TearDownTestSuite() { delete std::exchange(parts, nullptr); }

  /// The recogniser's results for a sound that is appended all at once.
  static RecognitionRecorder recognize(Samples const& samples, double sampleRate = 16000) {
    RecognitionRecorder recorder;
    auto const recognizer = onDeviceSpeechRecognizer(*parts).make(Locale("en-US"));
    EXPECT_TRUE(recognizer->isAvailable()) << "scripts/install-dependencies installs the models";
    auto const request = std::make_shared<SpeechAudioBufferRecognitionRequest>();
    auto const task = recognizer->recognitionTask(request, recorder.handler());
    for (auto const& buffer : buffersOf(samples, sampleRate)) request->appendAudioPCMBuffer(buffer);
    task->finish();
    EXPECT_TRUE(recorder.waitForEnd());
    for (auto const& entry : recorder.entries()) EXPECT_EQ(entry.error, nullptr);
    return recorder;
  }

  static std::string textOf(Samples const& samples) { return recognize(samples).settledText(); }
  static Samples sample(std::string const& name) {
    return waveSamples(std::filesystem::path(VEK_SAMPLE_SPEECH) / name);
  }

  static OnDeviceSpeechParts* parts;
};
OnDeviceSpeechParts* RecognitionTest::parts = nullptr;

TEST(OnnxRuntimeTest, LibraryLoadsAndReportsWhatItCannotRead) {
  SpeechModelFiles const files(modelsFolder());
  auto const runtime = std::make_shared<OnnxRuntime const>(files.path(SpeechModelFiles::engine));
  EXPECT_THAT(runtime->version(), HasSubstr("."));
  EXPECT_THROW(OnnxSession(runtime, files.path(SpeechModelFiles::vocabulary)), OnnxError);
  EXPECT_THROW(OnnxRuntime("/dev/null"), OnnxError);
}

TEST(OnnxRuntimeTest, FetchingAndLoadingAgreeOnTheSums) {
  std::ifstream input(std::filesystem::path(VEK_SAMPLE_SPEECH) / "../../scripts/fetch-models");
  std::string const script(std::istreambuf_iterator<char>(input), {});
  for (auto const& file : SpeechModelFiles::all) {
    EXPECT_THAT(script, AllOf(HasSubstr(std::string(file.name) + '|'),
                              HasSubstr(std::string(file.sha256))));
  }
  EXPECT_EQ(SpeechModelFiles(modelsFolder()).problem(), std::nullopt);
}

TEST_F(RecognitionTest, SampleSpeechIsUnderstood) {
  std::size_t wrong = 0;
  std::size_t words = 0;
  for (SpeechSample const& sample : speechSamples(VEK_SAMPLE_SPEECH)) {
    std::string const text = textOf(sample.samples);
    std::size_t const errors = wrongWords(sample.transcript, text);
    EXPECT_LE(errors, 3) << sample.name << ": " << text;
    wrong += errors;
    words += spokenWords(sample.transcript).size();
  }
  EXPECT_GT(words, 150);
  EXPECT_LE(wrong * 100, words * 4);
}

TEST_F(RecognitionTest, FirstWordOfAudioThatWaitsForTheModelsIsInTheText) {
  // Without the silence before its first word.
  Samples speech = sample("hts-slt-s05.wav");
  speech.erase(speech.begin(), speech.begin() + 2000);
  OnDeviceSpeechParts const fresh = installedSpeechParts(modelsFolder());
  RecognitionRecorder recorder;
  auto const request = std::make_shared<SpeechAudioBufferRecognitionRequest>();
  auto const task = onDeviceSpeechRecognizer(fresh)
                        .make(Locale("en-US"))
                        ->recognitionTask(request, recorder.handler());
  for (auto const& buffer : buffersOf(speech)) request->appendAudioPCMBuffer(buffer);
  ASSERT_TRUE(recorder.entries().empty());
  task->finish();
  ASSERT_TRUE(recorder.waitForEnd());
  auto const words = spokenWords(recorder.settledText());
  ASSERT_GT(words.size(), 10);
  EXPECT_EQ(words[0], "i");
  EXPECT_EQ(words[1], "understand");
}

TEST_F(RecognitionTest, EachSentenceIsSettledAtItsPauseWithItsTime) {
  Samples speech;
  for (char const* name : {"hts-slt-s01.wav", "flite-rms-s07.wav"}) {
    Samples const sentence = sample(name);
    speech.insert(speech.end(), sentence.begin(), sentence.end());
    speech.resize(speech.size() + 16000);
  }
  auto const entries = recognize(speech).entries();
  std::vector<SpeechRecognitionResult> settled;
  for (auto const& entry : entries) {
    if (entry.result->speechRecognitionMetadata && !entry.result->isFinal)
      settled.push_back(*entry.result);
  }
  ASSERT_EQ(settled.size(), 2);
  EXPECT_THAT(settled[0].bestTranscription.formattedString,
              AllOf(HasSubstr("busy"), testing::Not(HasSubstr("proposal"))));
  EXPECT_THAT(settled[1].bestTranscription.formattedString,
              AllOf(HasSubstr("proposal"), testing::Not(HasSubstr("busy"))));
  auto const& first = *settled[0].speechRecognitionMetadata;
  auto const& second = *settled[1].speechRecognitionMetadata;
  EXPECT_LE(first.speechStart + first.speechDuration, second.speechStart);
  EXPECT_GT(second.speechDuration, std::chrono::seconds(3));
}

TEST_F(RecognitionTest, OtherSampleRatesAreUnderstoodToo) {
  Samples const speech = sample("hts-slt-s02.wav");
  Samples tripled;
  for (std::size_t index = 0; index < speech.size(); ++index) {
    int const next = index + 1 < speech.size() ? speech[index + 1] : speech[index];
    for (int third = 0; third < 3; ++third) {
      tripled.push_back(
          static_cast<std::int16_t>(speech[index] + (next - speech[index]) * third / 3));
    }
  }
  std::string const text = recognize(tripled, 48000).settledText();
  EXPECT_THAT(text, AllOf(HasSubstr("renewal"), HasSubstr("subscription"), HasSubstr("March")));
}

/// Ten seconds of a sound, of which `value` gives the sample at a time in seconds.
Samples sound(std::function<double(double)> const& value) {
  Samples samples(10 * 16000);
  for (std::size_t index = 0; index < samples.size(); ++index) {
    samples[index] =
        static_cast<std::int16_t>(std::lround(32767 * value(static_cast<double>(index) / 16000)));
  }
  return samples;
}

TEST_F(RecognitionTest, WhatIsNoSpeechGivesNoText) {
  std::mt19937 generator(1);
  std::normal_distribution<double> normal(0, 1);
  auto const noise = [&](double level) {
    return [&, level](double) { return std::clamp(level * normal(generator), -1.0, 1.0); };
  };
  auto const tone = [](double frequency) {
    return [frequency](double time) {
      return 0.5 * std::sin(2 * std::numbers::pi * frequency * time);
    };
  };
  auto const clicks = [](double time) { return std::fmod(time, 0.7) < 0.002 ? 0.9 : 0.0; };
  auto const beeps = [&](double time) {
    return std::fmod(time, 1.0) < 0.2 ? tone(1000)(time) : 0.0;
  };

  EXPECT_EQ(textOf(sound([](double) { return 0.0; })), "") << "silence";
  for (double const level : {0.001, 0.02, 0.1, 0.3})
    EXPECT_EQ(textOf(sound(noise(level))), "") << "noise " << level;
  for (double const frequency : {50, 220, 440, 1000, 3000})
    EXPECT_EQ(textOf(sound(tone(frequency))), "") << "tone " << frequency;
  EXPECT_EQ(textOf(sound(clicks)), "") << "clicks";
  EXPECT_EQ(textOf(sound(beeps)), "") << "beeps";
}

}  // namespace
}  // namespace vek
