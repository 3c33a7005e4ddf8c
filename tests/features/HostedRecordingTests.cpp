// SPDX-License-Identifier: MIT
// Recordings through the hosted recogniser's client and real sockets, as the store sees them.
#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include "Clients/RemoteSpeechRecognitionClientImpl.hpp"
#include "features/RecordingFeature.hpp"
#include "platform/Deployment.hpp"
#include "support/RecogniserMessages.hpp"
#include "support/TestStore.hpp"
#include "support/WebSocketTestServer.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;
using Feature = RecordingFeature;
using State = Feature::State;
using Action = Feature::Action;
using Internal = Feature::InternalAction;
using test::WebSocketPeer;
using test::WebSocketTestServer;

Action internal(Internal action) {
  return Action::internal{std::move(action)};
}

/// A microphone that hears something all the time.
class Microphone {
 public:
  RecordingClient client() {
    return {.startRecording =
                [this] {
                  auto ends = RecordingClient::Buffers::makeStream();
                  speaker_ = std::jthread(
                      [buffers = std::move(ends.continuation)](std::stop_token const& stop) {
                        for (; !stop.stop_requested(); std::this_thread::sleep_for(3ms)) {
                          buffers.yield(std::make_shared<AudioPCMBuffer const>(
                              AudioFormat(AudioCommonFormat::pcmFormatInt16, 48000, 2, true),
                              std::vector<std::int16_t>(288)));
                        }
                      });
                  return std::move(ends.stream);
                },
            .stopRecording = [this] { speaker_.request_stop(); }};
  }

 private:
  std::jthread speaker_;
};

struct HostedRecordingTests : testing::Test {
  ~HostedRecordingTests() override { setDeployment(Deployment::builtIn()); }

  static Task<NewTranscriptDTO> create(NewTranscriptDTO created) { co_return created; }
  static Task<> append() { co_return; }

  auto dependencies() {
    return [this](DependencyValues& values) {
      APIClient api;
      api.createTranscript = [this](auto const&, auto const&) { return create(created); };
      api.updateTranscript = [](std::string const&, UUID) { return append(); };
      values.set(apiClient, api);
      values.set(date, DateGenerator{[] { return Date(); }});
      auto const remote = withDependencies(
          [this](DependencyValues& inner) { inner.set(recordingClient, microphone.client()); },
          [] {
            return makeRemoteSpeechRecognitionClient(
                {.makeSession =
                     [](auto delegate) {
                       return URLSession::make(
                           URLSession::Configuration::defaultSessionConfiguration(), delegate);
                     },
                 .captureDevice = {}});
          });
      SpeechRecognitionProvider provider;
      provider.startRecording = remote.startRecording;
      provider.stopRecording = remote.stopRecording;
      values.set(speechRcognitionProvider, provider);
    };
  }

  void start(test::TestStore<Feature>& store) {
    store.waitAtMost(20s);
    store.send(Action::recordButtonClicked{}, [](State& state) { state.isSwitching = true; });
    store.receive(internal(Internal::setIsLoading{true}),
                  [](State& state) { state.isLoading = true; });
    store.receive(internal(Internal::setIsLoading{false}),
                  [](State& state) { state.isLoading = false; });
    store.receive(internal(Internal::startRecording{created}), [this](State& state) {
      state.recording = Recording{.startDate = Date(), .id = created.id};
      state.isSwitching = false;
    });
  }

  Microphone microphone;
  NewTranscriptDTO const created{.id = UUID::random()};
};

TEST_F(HostedRecordingTests, ADroppedConnectionCostsTheRecordingNothingButAPause) {
  WebSocketTestServer const server({[](WebSocketPeer& peer) {
                                      peer.upgrade();
                                      peer.waitForMessages(1);
                                      peer.text(test::partialMessage("so"));
                                      peer.finish();
                                    },
                                    [](WebSocketPeer& peer) {
                                      peer.upgrade();
                                      peer.waitForMessages(1);
                                      peer.text(test::finalMessage("so be it"));
                                    }});
  setDeployment({.recogniserURL = server.url()});
  {
    test::TestStore<Feature> store({}, dependencies());
    start(store);
    store.receive(internal(Internal::updateTranscript{{"so", true}}),
                  [](State& state) { state.recording->tempTranscript = "so"; });
    store.receive(internal(Internal::updateTranscript{{"so be it", false}}), [](State& state) {
      state.recording->tempTranscript.reset();
      state.recording->transcript = "so be it";
    });
    store.receive(internal(Internal::setIsLoading{true}),
                  [](State& state) { state.isLoading = true; });
    store.receive(internal(Internal::updateLastAppendedTranscript{SharedText("so be it")}),
                  [](State& state) { state.lastAppendedTranscript = "so be it"; });
    store.receive(internal(Internal::setIsLoading{false}),
                  [](State& state) { state.isLoading = false; });

    store.send(Action::recordButtonClicked{}, [](State& state) { state.isSwitching = true; });
    store.receive(Action::delegate{Feature::DelegateAction::didFinishRecordingTranscript{}});
    store.receive(internal(Internal::resetState{}), [](State& state) { state = State(); });
  }
  EXPECT_TRUE(server.waitForEnd(2));
}

TEST_F(HostedRecordingTests, AConnectionThatIsNotToBeHadIsShownAndEndsTheRecording) {
  WebSocketTestServer const server({[](WebSocketPeer& peer) { peer.answer(401); }});
  setDeployment({.recogniserURL = server.url(), .recogniserKey = "a secret"});
  {
    test::TestStore<Feature> store({}, dependencies());
    start(store);
    store.receive<Action::internal>([](State& state, Action::internal const& received) {
      state.error = std::get<Internal::recordingError>(received.action.value).error;
    });
    ASSERT_TRUE(store.state().error);
    EXPECT_THAT(
        store.state().error->localizedDescription(),
        testing::AllOf(testing::HasSubstr("401"), testing::Not(testing::HasSubstr("secret"))));
    store.receive(internal(Internal::resetState{}), [](State& state) { state.recording.reset(); });
  }
  EXPECT_TRUE(server.waitForEnd(1));
}

}  // namespace
}  // namespace vek
