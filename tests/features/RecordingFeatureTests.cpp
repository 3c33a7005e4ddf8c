// SPDX-License-Identifier: MIT
#include "features/RecordingFeature.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

#include "support/TestStore.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;
using test::TestStore;
using Feature = RecordingFeature;
using State = Feature::State;
using Action = Feature::Action;
using Internal = Feature::InternalAction;
using ::testing::ElementsAre;

Action internal(Internal action) {
  return Action::internal{std::move(action)};
}
Action piece(std::string text) {
  return internal(Internal::updateTranscript{{std::move(text), false}});
}
Action partial(std::string text) {
  return internal(Internal::updateTranscript{{std::move(text), true}});
}
Action isLoading(bool value) {
  return internal(Internal::setIsLoading{value});
}
Action const reset = internal(Internal::resetState{});
Action const finished = Action::delegate{Feature::DelegateAction::didFinishRecordingTranscript{}};
Action const click = Action::recordButtonClicked{};

/// A backend and a recogniser that do what the test says.
class RecordingFeatureTests : public ::testing::Test {
 protected:
  NewTranscriptDTO const created{.id = UUID::random()};
  Date const now{1000s};
  std::vector<std::string> appended;
  std::vector<UUID> appendedTo;
  int creations = 0;
  std::exception_ptr createError;
  std::exception_ptr appendError;
  std::exception_ptr startError;
  std::exception_ptr stopError;
  Stream<RecordingTranscript>::Ends pieces = Stream<RecordingTranscript>::makeStream();

  static void throwIf(std::exception_ptr const& error) {
    if (error) std::rethrow_exception(error);
  }
  static std::exception_ptr failure(char const* text) {
    return std::make_exception_ptr(std::runtime_error(text));
  }

  Task<NewTranscriptDTO> create() {
    ++creations;
    throwIf(createError);
    co_return created;
  }
  Task<> append(std::string text, UUID id) {
    throwIf(appendError);
    appended.push_back(std::move(text));
    appendedTo.push_back(id);
    co_return;
  }
  Task<Stream<RecordingTranscript>> start() {
    throwIf(startError);
    co_return pieces.stream;
  }
  Task<> stop() {
    throwIf(stopError);
    co_return;
  }

  auto dependencies() {
    return [this](DependencyValues& values) {
      APIClient api;
      api.createTranscript = [this](auto customer, auto insight) {
        EXPECT_FALSE(customer || insight);
        return create();
      };
      api.updateTranscript = [this](std::string text, UUID id) {
        return append(std::move(text), id);
      };
      values.set(apiClient, api);
      SpeechRecognitionProvider provider;
      provider.startRecording = [this] { return start(); };
      provider.stopRecording = [this] { return stop(); };
      values.set(speechRcognitionProvider, provider);
      values.set(date, DateGenerator{[this] { return now; }});
    };
  }

  State recordingState(std::string transcript, std::optional<SharedText> pending = {}) {
    State state;
    state.recording = Recording{
        .transcript = transcript, .tempTranscript = pending, .startDate = now, .id = created.id};
    return state;
  }

  void startRecording(TestStore<Feature>& store) {
    store.send(click, [](State& state) { state.isSwitching = true; });
    store.send(click);
    store.receive(isLoading(true), [](State& state) { state.isLoading = true; });
    store.receive(isLoading(false), [](State& state) { state.isLoading = false; });
    store.receive(internal(Internal::startRecording{created}), [this](State& state) {
      state.recording = Recording{.startDate = now, .id = created.id};
      state.isSwitching = false;
    });
    EXPECT_EQ(std::exchange(creations, 0), 1) << "the second press came too soon to count";
  }

  void expectAppended(TestStore<Feature>& store, std::string const& whole) {
    store.receive(isLoading(true), [](State& state) { state.isLoading = true; });
    store.receive(internal(Internal::updateLastAppendedTranscript{SharedText(whole)}),
                  [&](State& state) { state.lastAppendedTranscript = whole; });
    store.receive(isLoading(false), [](State& state) { state.isLoading = false; });
  }

  static void clear(State& state) {
    state.recording.reset();
    state.lastAppendedTranscript.reset();
    state.isLoading = false;
    state.isSwitching = false;
  }
};

TEST_F(RecordingFeatureTests, PiecesArePushedAsTheyFinishAndOnlyWithWhatIsNew) {
  TestStore<Feature> store({}, dependencies());
  startRecording(store);
  pieces.continuation.yield({"Hel", true});
  store.receive(partial("Hel"), [](State& state) { state.recording->tempTranscript = "Hel"; });
  pieces.continuation.yield({"Hello.", false});
  store.receive(piece("Hello."), [](State& state) {
    state.recording->transcript = "Hello.";
    state.recording->tempTranscript.reset();
  });
  expectAppended(store, "Hello.");
  pieces.continuation.yield({"Bye.", false});
  store.receive(piece("Bye."), [](State& state) { state.recording->transcript = "Hello.\nBye."; });
  expectAppended(store, "Hello.\nBye.");
  EXPECT_THAT(appended, ElementsAre("Hello.", "\nBye."));
  EXPECT_THAT(appendedTo, ElementsAre(created.id, created.id));

  store.send(click, [](State& state) { state.isSwitching = true; });
  store.receive(finished);
  store.receive(reset, clear);
}

TEST_F(RecordingFeatureTests, AStopSavesThePendingTextBehindANewlineAlsoWhenItIsTheFirst) {
  TestStore<Feature> store(recordingState("", SharedText("pending")), dependencies());
  store.send(click, [](State& state) { state.isSwitching = true; });
  store.receive(isLoading(true), [](State& state) { state.isLoading = true; });
  store.receive(internal(Internal::updateLastAppendedTranscript{SharedText("\npending")}),
                [](State& state) { state.lastAppendedTranscript = "\npending"; });
  store.receive(reset, clear);
  store.receive(finished);
  store.receive(reset);
  EXPECT_THAT(appended, ElementsAre("\npending"));
}

TEST_F(RecordingFeatureTests, TheButtonDoesNothingWhileLoadingOrStopping) {
  State loading;
  loading.isLoading = true;
  TestStore<Feature>(loading, dependencies()).send(click);
  auto stopping = recordingState("said", SharedText("pending"));
  stopping.isSwitching = true;
  TestStore<Feature>(stopping, dependencies()).send(click);
  EXPECT_EQ(creations, 0);
  EXPECT_TRUE(appended.empty());
}

TEST_F(RecordingFeatureTests, AFailedPieceGoesWithTheNextOne) {
  TestStore<Feature> store(recordingState("A"), dependencies());
  appendError = failure("no backend");
  store.send(piece("B"), [](State& state) { state.recording->transcript = "A\nB"; });
  store.receive(isLoading(true), [](State& state) { state.isLoading = true; });
  store.receive<Action::internal>([](State& state, Action::internal const& received) {
    state.error = std::get<Internal::recordingError>(received.action.value).error;
    EXPECT_EQ(state.error->localizedDescription(), "no backend");
  });
  store.receive(isLoading(false), [](State& state) { state.isLoading = false; });
  appendError = nullptr;
  store.send(piece("C"), [](State& state) { state.recording->transcript = "A\nB\nC"; });
  expectAppended(store, "A\nB\nC");
  EXPECT_THAT(appended, ElementsAre("A\nB\nC"));
  store.send(Action::dismissErrorButtonClicked{}, [](State& state) { state.error.reset(); });
}

TEST_F(RecordingFeatureTests, EveryOccurrenceOfTheAcknowledgedTextIsRemoved) {
  auto state = recordingState("yes");
  state.lastAppendedTranscript = "yes";
  TestStore<Feature> store(state, dependencies());
  store.send(piece("oh yes, yes"), [](State& s) { s.recording->transcript = "yes\noh yes, yes"; });
  expectAppended(store, "yes\noh yes, yes");
  EXPECT_THAT(appended, ElementsAre("\noh , "));
}

TEST_F(RecordingFeatureTests, AFailureToCreateStartsNothingAndKeepsItsError) {
  createError = failure("refused");
  TestStore<Feature> store({}, dependencies());
  store.send(click, [](State& state) { state.isSwitching = true; });
  store.receive(isLoading(true), [](State& state) { state.isLoading = true; });
  store.receive<Action::internal>([](State& state, Action::internal const& received) {
    state.error = std::get<Internal::recordingError>(received.action.value).error;
  });
  store.receive(reset, clear);
  EXPECT_EQ(store.state().error->localizedDescription(), "refused");
}

TEST_F(RecordingFeatureTests, AFailingRecogniserEndsTheRecordingFromStartOrStream) {
  for (bool const failsAtStart : {true, false}) {
    startError = failsAtStart ? failure("broken") : nullptr;
    pieces = Stream<RecordingTranscript>::makeStream();
    pieces.continuation.finish(failure("broken"));
    TestStore<Feature> store({}, dependencies());
    startRecording(store);
    store.receive<Action::internal>([](State& state, Action::internal const& received) {
      state.error = std::get<Internal::recordingError>(received.action.value).error;
    });
    store.receive(reset, clear);
    EXPECT_EQ(store.state().error->localizedDescription(), "broken");
  }
}

TEST_F(RecordingFeatureTests, AStreamThatEndsLeavesTheRecordingToBeStopped) {
  pieces.continuation.finish();
  TestStore<Feature> store({}, dependencies());
  startRecording(store);
  store.finish();
  EXPECT_TRUE(store.state().recording);
}

TEST_F(RecordingFeatureTests, AFailureToStopShowsItsErrorBehindTheReset) {
  stopError = failure("stuck");
  TestStore<Feature> store(recordingState("said", SharedText("pending")), dependencies());
  store.send(click, [](State& state) { state.isSwitching = true; });
  store.receive(finished);
  store.receive(reset, clear);
  store.receive<Action::internal>([](State& state, Action::internal const& received) {
    state.error = std::get<Internal::recordingError>(received.action.value).error;
  });
  EXPECT_TRUE(appended.empty());
}

TEST_F(RecordingFeatureTests, AFailureToSaveThePendingTextStillFinishes) {
  appendError = failure("no backend");
  TestStore<Feature> store(recordingState("said", SharedText("pending")), dependencies());
  store.send(click, [](State& state) { state.isSwitching = true; });
  store.receive(isLoading(true), [](State& state) { state.isLoading = true; });
  store.receive<Action::internal>([](State& state, Action::internal const& received) {
    state.error = std::get<Internal::recordingError>(received.action.value).error;
  });
  store.receive(finished);
  store.receive(reset, clear);
}

TEST_F(RecordingFeatureTests, APieceBehindTheResetOnlyResetsAgain) {
  TestStore<Feature> store({}, dependencies());
  store.send(piece("late"));
  store.receive(reset);
  EXPECT_TRUE(appended.empty());
}

TEST_F(RecordingFeatureTests, ShowsTimeAndText) {
  State state;
  EXPECT_EQ(state.elapsedTimeText(), "--:--");
  EXPECT_EQ(state.displayedTranscript(), "--:--");
  state = recordingState("");
  auto elapsed = [&](std::chrono::seconds ago) {
    state.recording->startDate = std::chrono::system_clock::now() - ago - 500ms;
    return state.elapsedTimeText();
  };
  EXPECT_EQ(elapsed(65s), "01:05");
  EXPECT_EQ(elapsed(3599s), "59:59");
  EXPECT_EQ(elapsed(3600s), "01:00:00");
  EXPECT_EQ(state.displayedTranscript(), "");
  state.recording->tempTranscript = "now";
  EXPECT_EQ(state.displayedTranscript(), "now");
  state.recording->transcript = "before";
  EXPECT_EQ(state.displayedTranscript(), "before\nnow");
}

}  // namespace
}  // namespace vek
