// SPDX-License-Identifier: MIT
#include "app/RecordSession.hpp"

#include <cstdlib>
#include <deque>
#include <stdexcept>

#include "runtime/CallbackOperation.hpp"
#include "support/RunMainQueue.hpp"

namespace vek {
namespace {

using test::runMainQueue;
using test::runMainQueueUntil;

/// What a C stream was given.
class Written {
 public:
  Written() : file_(open_memstream(&text_, &size_)) {}
  Written(Written const&) = delete;
  Written& operator=(Written const&) = delete;
  ~Written() {
    std::fclose(file_);
    std::free(text_);
  }
  [[nodiscard]] std::FILE* file() const { return file_; }
  [[nodiscard]] std::string text() const {
    std::fflush(file_);
    return {text_, size_};
  }

 private:
  char* text_ = nullptr;
  std::size_t size_ = 0;
  std::FILE* file_;
};

/// A backend whose every answer the test gives, and a recogniser that says what it is told.
class RecordSessionTests : public testing::Test {
 protected:
  NewTranscriptDTO const created{.id = UUID::random()};
  Stream<RecordingTranscript>::Ends pieces = Stream<RecordingTranscript>::makeStream();
  /// The calls of the backend that wait for their answers.
  std::deque<std::function<void(bool isGood)>> calls;
  int stops = 0;
  Written output;
  Written messages;
  Terminal terminal{output.file(), messages.file()};
  RecordOutput recordOutput{terminal, false};
  std::optional<RecordSession> session;

  template <class T>
  Task<T> answered(T value) {
    co_return co_await callbackOperation<T>(
        [this, &value](Completion<T> completion) {
          calls.emplace_back([completion, value](bool isGood) {
            if (isGood) {
              completion.resolve(T(value));
            } else {
              completion.reject(std::make_exception_ptr(std::runtime_error("The backend is ill.")));
            }
          });
        },
        [] {});
  }
  Task<> updated() { co_await answered(true); }
  Task<Stream<RecordingTranscript>> start() { co_return pieces.stream; }
  Task<> stop() {
    ++stops;
    pieces.continuation.finish();
    co_return;
  }

  /// Presses the button.
  void begin() {
    pieces = Stream<RecordingTranscript>::makeStream();
    auto const store = withDependencies(
        [this](DependencyValues& values) {
          APIClient api;
          api.createTranscript = [this](auto, auto) { return answered(created); };
          api.updateTranscript = [this](auto const&, auto) { return updated(); };
          values.set(apiClient, api);
          SpeechRecognitionProvider provider;
          provider.startRecording = [this] { return start(); };
          provider.stopRecording = [this] { return stop(); };
          values.set(speechRcognitionProvider, provider);
        },
        [] {
          return Store<RecordingFeature::State, RecordingFeature::Action>::make(
              RecordingFeature::State{}, [] { return RecordingFeature(); });
        });
    session.emplace(store, recordOutput);
  }
  void TearDown() override {
    session.reset();
    runMainQueue();
  }

  void answer(bool isGood) {
    ASSERT_TRUE(runMainQueueUntil([this] { return !calls.empty(); }));
    calls.front()(isGood);
    calls.pop_front();
    runMainQueue();
  }
  void say(std::string text, bool isPartial) {
    pieces.continuation.yield({std::move(text), isPartial});
    runMainQueue();
  }
  bool endsStored() {
    EXPECT_TRUE(runMainQueueUntil([this] {
      session->advance();
      return session->isDone();
    }));
    return session->finish();
  }
  [[nodiscard]] std::string lastLine() const {
    return "Transcript " + created.id.lowerCaseText() + "\n";
  }
};

TEST_F(RecordSessionTests, PressesStopWhenTheButtonTakesIt) {
  begin();
  session->stop();
  runMainQueue();
  session->advance();
  EXPECT_EQ(stops, 0);
  EXPECT_FALSE(session->isDone());

  answer(true);
  say("One.", false);
  session->advance();
  runMainQueue();
  EXPECT_EQ(stops, 0) << "An append is under way.";
  answer(true);
  EXPECT_TRUE(endsStored());
  EXPECT_EQ(stops, 1);
  EXPECT_EQ(output.text(), "One.\n" + lastLine());
}

TEST_F(RecordSessionTests, TellsWhetherAllTextWasStored) {
  struct Case {
    std::string name;
    /// How the call for each piece ends, and last, where there is one, that of the pending piece.
    std::deque<bool> answers;
    bool hasPending;
    bool isStored;
  };
  std::string printed;
  for (auto const& [name, answers, hasPending, isStored] :
       std::vector<Case>{{"nothing said", {}, false, true},
                         {"all stored", {true, true}, false, true},
                         {"last piece failed", {true, false}, false, false},
                         {"a later piece took the failed one along", {false, true}, false, true},
                         {"pending text saved", {true, true}, true, true},
                         {"pending text not saved", {true, false}, true, false},
                         {"pending text took the failed piece along", {false, true}, true, true},
                         {"pending text alone", {true}, true, true}}) {
    SCOPED_TRACE(name);
    begin();
    answer(true);
    auto left = answers;
    std::string text;
    for (std::size_t i = 0; i < answers.size() - (hasPending ? 1 : 0); ++i) {
      say("A piece.", false);
      text += "A piece.\n";
      answer(left.front());
      left.pop_front();
    }
    if (hasPending) {
      say("and so", true);
      text += "and so\n";
    }
    session->stop();
    if (hasPending) answer(left.front());
    EXPECT_EQ(endsStored(), isStored);
    printed += text + lastLine();
    EXPECT_EQ(output.text(), printed);
  }
}

TEST_F(RecordSessionTests, ARecogniserThatFailsEndsItAndWhatItHeardIsShown) {
  begin();
  answer(true);
  say("One.", false);
  answer(true);
  say("and", true);
  pieces.continuation.finish(std::make_exception_ptr(std::runtime_error("It went deaf.")));
  EXPECT_FALSE(endsStored());
  EXPECT_EQ(stops, 0);
  EXPECT_EQ(output.text(), "One.\nand\n" + lastLine());
  EXPECT_EQ(messages.text(),
            "Recording. Ctrl-C stops.\nerror: It went deaf.\nerror: Not all of the text was "
            "stored.\n");
}

TEST_F(RecordSessionTests, WithoutATranscriptThereIsNothingToStop) {
  begin();
  answer(false);
  session->stop();
  EXPECT_FALSE(endsStored());
  EXPECT_EQ(output.text(), "");
  EXPECT_EQ(messages.text(), "error: The backend is ill.\n");
}

}  // namespace
}  // namespace vek
