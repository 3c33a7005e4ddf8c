// SPDX-License-Identifier: MIT
#include "platform/UtteranceSegmenter.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace vek {
namespace {

using Event = UtteranceSegmenter::Event;
using namespace std::chrono_literals;

constexpr std::size_t perSecond = speechSampleRate;

struct SegmenterTest : testing::Test {
  /// Adds frames of one level and gives the events that are not silence.
  std::vector<Event> add(std::size_t frames, float level, float probability) {
    std::vector<float> const frame(speechFrameLength, level);
    std::vector<Event> events;
    for (std::size_t index = 0; index < frames; ++index) {
      Event const event = segmenter.add(SpeechFrame(frame), probability);
      if (event != Event::silence) events.push_back(event);
      if (event == Event::end)
        ended.emplace_back(segmenter.utterance().begin(), segmenter.utterance().end());
    }
    return events;
  }
  std::vector<Event> speak(std::size_t frames, float level = 0.5F) {
    return add(frames, level, 0.9F);
  }
  std::vector<Event> pause(std::size_t frames) { return add(frames, 0, 0.05F); }

  UtteranceSegmenter segmenter;
  std::vector<std::vector<float>> ended;
};

TEST_F(SegmenterTest, PauseEndsAnUtteranceWithLeadInAndShortTail) {
  pause(100);
  speak(50);
  auto const events = pause(40);

  ASSERT_EQ(ended.size(), 1);
  EXPECT_EQ(events.back(), Event::end);
  auto const& utterance = ended.front();
  auto const firstLoud = std::ranges::find(utterance, 0.5F) - utterance.begin();
  auto const lastLoud =
      utterance.rend() - std::ranges::find(utterance.rbegin(), utterance.rend(), 0.5F);
  EXPECT_EQ(firstLoud, perSecond / 2);
  EXPECT_EQ(utterance.size() - static_cast<std::size_t>(lastLoud), perSecond * 3 / 10);
}

TEST_F(SegmenterTest, SpeechFromTheFirstSampleStillHasALeadIn) {
  speak(30);
  pause(30);
  ASSERT_EQ(ended.size(), 1);
  EXPECT_EQ(std::ranges::find(ended[0], 0.5F) - ended[0].begin(), perSecond / 2);
}

TEST_F(SegmenterTest, UtteranceAtThePauseIsTheOneThatIsSettled) {
  speak(30);
  std::vector<float> const silence(speechFrameLength, 0);
  Event event{};
  while ((event = segmenter.add(SpeechFrame(silence), 0)) != Event::pause)
    ASSERT_NE(event, Event::end);
  std::size_t const atPause = segmenter.utterance().size();
  while ((event = segmenter.add(SpeechFrame(silence), 0)) != Event::end)
    ASSERT_EQ(event, Event::silence);
  EXPECT_EQ(segmenter.utterance().size(), atPause);
}

TEST_F(SegmenterTest, ShortGapDoesNotCutAndAClickIsNoUtterance) {
  speak(20);
  pause(12);
  speak(20);
  EXPECT_TRUE(ended.empty());
  pause(30);
  EXPECT_EQ(ended.size(), 1);

  for (int click = 0; click < 20; ++click) {
    EXPECT_TRUE(speak(2).empty());
    pause(25);
  }
  EXPECT_EQ(ended.size(), 1);
  EXPECT_FALSE(segmenter.finish());
}

TEST_F(SegmenterTest, DoubtfulSoundNeitherEndsNorGrowsWithoutBound) {
  speak(2);
  add(2000, 0.1F, 0.4F);
  EXPECT_TRUE(ended.empty());
  EXPECT_LE(segmenter.utterance().size(), 13 * perSecond);
}

TEST_F(SegmenterTest, LongSpeechIsSplitAtItsQuietestMomentAndNoSampleIsLost) {
  speak(280);         // 9 s
  speak(4, 0.01F);    // the speaker draws breath
  speak(200, 0.25F);  // 6 s
  pause(30);

  ASSERT_EQ(ended.size(), 2);
  std::size_t quiet = 0;
  for (auto const& utterance : ended) {
    quiet += static_cast<std::size_t>(std::ranges::count(utterance, 0.01F));
    EXPECT_LE(utterance.size(), 12 * perSecond + speechFrameLength);
  }
  EXPECT_EQ(std::ranges::count(ended[0], 0.5F), 280 * speechFrameLength);
  EXPECT_EQ(std::ranges::count(ended[0], 0.25F), 0);
  EXPECT_EQ(quiet, 4 * speechFrameLength);
  EXPECT_EQ(std::ranges::count(ended[1], 0.25F), 200 * speechFrameLength);
  EXPECT_GE(std::ranges::find(ended[1], 0.01F) - ended[1].begin(), perSecond * 3 / 10);
}

TEST_F(SegmenterTest, SpeechThatEndsRightAfterASplitIsKept) {
  speak(250);
  speak(4, 0.01F);
  while (ended.empty()) speak(1, 0.25F);
  pause(30);
  ASSERT_EQ(ended.size(), 2);
  EXPECT_GT(std::ranges::count(ended[1], 0.25F), 0);
}

TEST_F(SegmenterTest, MetadataTellsWhenTheWordsWereSpoken) {
  pause(100);
  speak(50);
  while (ended.empty()) pause(1);
  EXPECT_EQ(segmenter.speechStart(), 3200ms);
  EXPECT_EQ(segmenter.speechDuration(), 1600ms);
}

}  // namespace
}  // namespace vek
