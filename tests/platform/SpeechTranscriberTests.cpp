// SPDX-License-Identifier: MIT
#include "platform/SpeechTranscriber.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <thread>

#include "support/RecognitionRecorder.hpp"
#include "support/ScriptedSpeechModels.hpp"
#include "support/SpeechSamples.hpp"

namespace vek {
namespace {

using namespace vek::test;
using namespace std::chrono_literals;
using Pace = SpeechTranscriber::Pace;
using testing::ElementsAre;

struct TranscriberTest : testing::Test {
  void hear(SpokenWords const& spoken, Pace pace = Pace::keepsUp) {
    for (auto const& buffer : buffersOf(spoken.samples()))
      transcriber.process(models, *buffer, pace, {});
  }

  /// The texts of the results: partial ones end in "...", final ones in "!".
  std::vector<std::string> results() {
    std::vector<std::string> texts;
    for (auto const& entry : recorder.entries()) {
      auto const& result = *entry.result;
      texts.push_back(result.bestTranscription.formattedString);
      if (!result.speechRecognitionMetadata) texts.back() += "...";
      if (result.isFinal) texts.back() += '!';
    }
    return texts;
  }

  RecognitionRecorder recorder;
  ScriptedSpeechModels models;
  SpeechTranscriber transcriber{recorder.handler()};
};

TEST_F(TranscriberTest, TextGrowsIsSettledAtThePauseAndStartsAnew) {
  hear(SpokenWords().words(1, 4).silence(1).word(5).silence(1));
  auto const texts = results();
  ASSERT_GE(texts.size(), 4);
  EXPECT_TRUE(texts[0].starts_with("w1") && texts[0].ends_with("...")) << texts[0];
  EXPECT_THAT(std::vector(texts.end() - 3, texts.end()), ElementsAre("w1 w2 w3 w4", "w5...", "w5"));
  EXPECT_FALSE(recorder.entries().back().result->isFinal);
}

TEST_F(TranscriberTest, TranscriptionAtThePauseIsNotRepeatedWhenItSettles) {
  std::atomic<int> count = 0;
  models.transcriptions = &count;
  hear(SpokenWords().word(1).silence(1));
  EXPECT_EQ(count, 1);
  EXPECT_THAT(results(), ElementsAre("w1...", "w1"));
}

TEST_F(TranscriberTest, NothingIsShownOfLessThanASecond) {
  hear(SpokenWords().word(1, 0.25));
  EXPECT_TRUE(results().empty());
}

TEST_F(TranscriberTest, WhenBehindOnlySettledTextComesAndNoneIsLost) {
  hear(SpokenWords().words(1, 4).silence(1).words(5, 8).silence(1), Pace::isBehind);
  EXPECT_THAT(results(), ElementsAre(SpokenWords::text(1, 4), SpokenWords::text(5, 8)));
}

TEST_F(TranscriberTest, LongSpeechIsSplitIntoTextsThatJoinWithoutRepetition) {
  hear(SpokenWords().words(1, 100).silence(1));
  EXPECT_EQ(recorder.settledText(), SpokenWords::text(1, 100));
  for (auto const& text : results()) EXPECT_LT(text.size(), 40 * 4U);
}

TEST_F(TranscriberTest, FinishSettlesWhatIsUnderWayAndNothingFollows) {
  hear(SpokenWords().words(1, 2));
  transcriber.finish(models, {});
  EXPECT_EQ(results().back(), "w1 w2!");
  EXPECT_TRUE(recorder.entries().back().result->speechRecognitionMetadata);

  std::size_t const count = recorder.entries().size();
  hear(SpokenWords().word(3).silence(1));
  transcriber.finish(models, {});
  transcriber.fail(std::make_exception_ptr(std::runtime_error("late")));
  EXPECT_EQ(recorder.entries().size(), count);
}

TEST_F(TranscriberTest, FinishWithoutSpeechGivesAnEmptyFinalResult) {
  hear(SpokenWords().silence(2));
  transcriber.finish(models, {});
  EXPECT_THAT(results(), ElementsAre("!"));
}

TEST_F(TranscriberTest, EmptyTranscriptionIsTriedAgainWithMoreSilenceAround) {
  struct Reluctant : ScriptedSpeechModels {
    std::string transcribe(std::span<float const> utterance, std::stop_token const& stop) override {
      bool const isPadded = std::ranges::all_of(utterance.first(speechSampleRate),
                                                [](float sample) { return sample == 0; });
      return isPadded ? ScriptedSpeechModels::transcribe(utterance, stop) : "";
    }
  } reluctant;
  for (auto const& buffer : buffersOf(SpokenWords().word(1).silence(1).samples())) {
    transcriber.process(reluctant, *buffer, Pace::isBehind, {});
  }
  EXPECT_THAT(results(), ElementsAre("w1"));
}

TEST_F(TranscriberTest, TextThatIsNotFoundAgainIsSettledAsItWasShown) {
  models.beforeTranscription = [](int) {};
  struct Forgetful : ScriptedSpeechModels {
    bool hasForgotten = false;
    std::string transcribe(std::span<float const> utterance, std::stop_token const& stop) override {
      return hasForgotten ? "" : ScriptedSpeechModels::transcribe(utterance, stop);
    }
  } forgetful;
  auto const hearForgetfully = [&](SpokenWords const& spoken) {
    for (auto const& buffer : buffersOf(spoken.samples()))
      transcriber.process(forgetful, *buffer, Pace::keepsUp, {});
  };
  hearForgetfully(SpokenWords().words(1, 3));
  std::string const shown = recorder.entries().back().result->bestTranscription.formattedString;
  forgetful.hasForgotten = true;
  hearForgetfully(SpokenWords().silence(1));
  EXPECT_EQ(results().back(), shown);
}

TEST_F(TranscriberTest, SlowModelsAreAskedForProgressLessOften) {
  std::atomic<int> count = 0;
  models.transcriptions = &count;
  models.beforeTranscription = [](int) { std::this_thread::sleep_for(800ms); };
  hear(SpokenWords().words(1, 10));  // 4 s: every 0.6 s would be six times
  EXPECT_LE(count, 3);
}

/// One second of a tone in a format.
AudioPCMBuffer tone(double sampleRate, std::uint32_t channels) {
  std::vector<std::int16_t> samples;
  for (int frame = 0; frame < static_cast<int>(sampleRate); ++frame) {
    auto const value = static_cast<std::int16_t>(
        10000 * std::sin(2 * std::numbers::pi * 440 * frame / sampleRate));
    samples.insert(samples.end(), channels, value);
  }
  return {AudioFormat(AudioCommonFormat::pcmFormatInt16, sampleRate, channels, true),
          std::move(samples)};
}

TEST(SpeechResamplerTest, EveryFormatBecomesSixteenKilohertzMonoAlsoWhenItChanges) {
  SpeechResampler resampler;
  for (auto const& [rate, channels] :
       {std::pair{48000.0, 2U}, {44100.0, 1U}, {16000.0, 2U}, {8000.0, 1U}}) {
    std::vector<float> output;
    resampler.process(tone(rate, channels), output);
    ASSERT_NEAR(static_cast<double>(output.size()), 16000, 100) << rate;
    int rises = 0;
    for (std::size_t index = 1; index < output.size(); ++index)
      rises += output[index - 1] < 0 && output[index] >= 0 ? 1 : 0;
    EXPECT_NEAR(rises, 440, 4) << rate;
    EXPECT_NEAR(std::ranges::max(output), 10000.0 / 32768, 0.02) << rate;
  }
}

}  // namespace
}  // namespace vek
