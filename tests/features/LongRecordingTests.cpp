// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "features/RecordingFeature.hpp"
#include "runtime/Store.hpp"
#include "support/RunMainQueue.hpp"

namespace vek {
namespace {

using Action = RecordingFeature::Action;

/// A recording whose pieces and acknowledgements come when the test says, and the text that the
/// backend would have.
class LongRecordingTests : public ::testing::Test {
 protected:
  void SetUp() override {
    withDependencies([this](DependencyValues& values) { replaceClients(values); },
                     [this] {
                       store = Store<RecordingFeature::State, Action>::make(
                           {}, [] { return RecordingFeature(); });
                     });
    store->send(Action::recordButtonClicked{});
    test::runMainQueue();
  }

  void replaceClients(DependencyValues& values) {
    APIClient api;
    api.createTranscript = [](auto, auto) -> Task<NewTranscriptDTO> {
      co_return NewTranscriptDTO();
    };
    api.updateTranscript = [this](std::string text, UUID) { return append(std::move(text)); };
    values.set(apiClient, api);
    SpeechRecognitionProvider provider;
    provider.startRecording = [this]() -> Task<Stream<RecordingTranscript>> {
      co_return pieces.stream;
    };
    provider.stopRecording = []() -> Task<> { co_return; };
    values.set(speechRcognitionProvider, provider);
  }

  Task<> append(std::string text) {
    stored += text;
    if (answersAtOnce) co_return;
    co_await callbackOperation<bool>(
        [this](Completion<bool> answer) { answers.push_back(answer); });
  }

  void say(std::string text) {
    pieces.continuation.yield({std::move(text), false});
    test::runMainQueue();
  }

  void acknowledge(std::size_t call) {
    answers.at(call).resolve(true);
    test::runMainQueue();
  }

  std::string const& text() const { return store->state().recording->transcript.string(); }

  Stream<RecordingTranscript>::Ends pieces = Stream<RecordingTranscript>::makeStream();
  std::string stored;
  bool answersAtOnce = true;
  std::vector<Completion<bool>> answers;
  Store<RecordingFeature::State, Action>::Shared store;
};

TEST_F(LongRecordingTests, EightHoursArriveAsTheyWereSaid) {
  constexpr int pieceCount = 8 * 3600 / 5;
  for (int i = 0; i < pieceCount; ++i) {
    pieces.continuation.yield({"Sentence " + std::to_string(i), true});
    say("Sentence " + std::to_string(i) + " of a long talk.");
  }
  EXPECT_EQ(stored, text());
  EXPECT_EQ(std::count(stored.begin(), stored.end(), '\n'), pieceCount - 1);
  EXPECT_EQ(store->state().lastAppendedTranscript, store->state().recording->transcript);
}

// The text sent is what is left when every occurrence of the acknowledged text is taken out. These
// are the cases in which that is not the text said since.

TEST_F(LongRecordingTests, APieceThatFinishesBeforeTheLastWasAcknowledgedRepeatsIt) {
  answersAtOnce = false;
  say("One.");
  say("Two.");
  EXPECT_EQ(stored, "One.One.\nTwo.");
  acknowledge(0);
  acknowledge(1);
  say("Three.");
  EXPECT_EQ(stored, "One.One.\nTwo.\nThree.");
}

TEST_F(LongRecordingTests, AcknowledgementsOutOfOrderRepeatWhatCameBetween) {
  answersAtOnce = false;
  say("One.");
  say("Two.");
  acknowledge(1);
  acknowledge(0);
  stored.clear();
  say("Three.");
  EXPECT_EQ(stored, "\nTwo.\nThree.");
}

TEST_F(LongRecordingTests, APieceThatHoldsTheWholeTextSoFarLosesIt) {
  say("Yes.");
  say("Yes. I said Yes.");
  EXPECT_EQ(stored, "Yes.\n I said ");
  EXPECT_EQ(text(), "Yes.\nYes. I said Yes.");
}

TEST_F(LongRecordingTests, AnEmptyPieceAcknowledgesNothing) {
  say("");
  say("One.");
  EXPECT_EQ(stored, "One.");
}

}  // namespace
}  // namespace vek
