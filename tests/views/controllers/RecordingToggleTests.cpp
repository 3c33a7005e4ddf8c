// SPDX-License-Identifier: MIT
#include "views/RecordingToggle.hpp"

#include <gtest/gtest.h>

#include "support/PendingCalls.hpp"
#include "support/RunMainQueue.hpp"

namespace vek::test {
namespace {

using Action = AppFeature::Action;
using Internal = RecordingFeature::InternalAction;

/// Backend calls that are answered when the test does so. They outlive each store.
PendingCalls<NewTranscriptDTO> creations;
PendingCalls<std::monostate> appends;
PendingCalls<std::vector<CustomerDTO>> customers;
PendingCalls<std::vector<TranscriptMetadataDTO>> metadata;

Task<> append() {
  co_await appends.call();
}

class RecordingToggleTests : public testing::Test {
 protected:
  void TearDown() override {
    launch.cancel();
    runMainQueue();
  }

  void change(DependencyValues& values) {
    APIClient api;
    api.createTranscript = [](auto, auto) { return creations.call(); };
    api.updateTranscript = [](auto, auto) { return append(); };
    api.getCustomers = [] { return customers.call(); };
    api.getAllTranscriptsMetadata = [] { return metadata.call(); };
    values.set(apiClient, api);
    SpeechRecognitionProvider provider;
    provider.hasPermission = [this]() -> Task<bool> { co_return isPermitted; };
    provider.startRecording = []() -> Task<Stream<RecordingTranscript>> {
      co_return Stream<RecordingTranscript>::makeStream().stream;
    };
    provider.stopRecording = [this]() -> Task<> {
      ++stops;
      co_return;
    };
    values.set(speechRcognitionProvider, provider);
    CredentialsClient client;
    client.credentials = [this]() -> Task<Credentials> {
      if (!isSignedIn) throw CancellationError();
      co_return Credentials({.accessToken = "token", .tokenType = "Bearer", .expiresIn = {}});
    };
    client.storeCredentials = [](auto const&) -> Task<bool> { co_return true; };
    values.set(credentialsClient, client);
  }

  void start() {
    launch = store->send(Action::start{});
    runMainQueue();
  }
  void press() {
    toggle.press(launch);
    runMainQueue();
  }
  void send(Internal action) {
    store->send(Action::recording{RecordingFeature::Action::internal{std::move(action)}});
    runMainQueue();
  }

  bool isSignedIn = true;
  bool isPermitted = true;
  int stops = 0;
  int refusals = 0;
  RecordingToggle::Observed::Shared store =
      withDependencies([this](DependencyValues& values) { change(values); },
                       [] {
                         return Store<AppFeature::State, Action>::make(AppFeature::State{},
                                                                       [] { return AppFeature(); });
                       });
  RecordingToggle toggle{store, [this] { ++refusals; }};
  StoreTask launch;
};

TEST_F(RecordingToggleTests, EachPressCountsOnceAndAsSoonAsTheButtonTakesIt) {
  auto const before = creations.waiting();
  toggle.press(launch = store->send(Action::start{}));
  EXPECT_THROW(toggle.press(launch), std::runtime_error) << "the first one waits for the launch";
  runMainQueue();
  EXPECT_THROW(toggle.press(launch), std::runtime_error) << "the transcript is being made";
  ASSERT_EQ(creations.waiting(), before + 1);
  creations.answer({.id = UUID::random()});
  runMainQueue();
  ASSERT_TRUE(store->state().recording.recording);

  send(Internal::updateTranscript{{"a piece", false}});
  press();
  EXPECT_THROW(toggle.press(launch), std::runtime_error) << "the stop waits for the piece";
  EXPECT_EQ(stops, 0);
  appends.answer({});
  runMainQueue();
  EXPECT_EQ(stops, 1);
  EXPECT_FALSE(store->state().recording.recording);
  EXPECT_EQ(creations.waiting(), before);
  EXPECT_EQ(refusals, 0);
}

TEST_F(RecordingToggleTests, AStopThatWaitsStartsNothingWhenTheRecordingEndsByItself) {
  start();
  send(Internal::startRecording{{.id = UUID::random()}});
  send(Internal::setIsLoading{true});
  press();
  auto const before = creations.waiting();
  send(Internal::resetState{});
  EXPECT_EQ(stops, 0);
  EXPECT_EQ(creations.waiting(), before);
  press();
  EXPECT_EQ(creations.waiting(), before + 1) << "and the next press counts again";
}

TEST_F(RecordingToggleTests, WhoMayNotRecordIsToldBeforeTheTranscriptsAreFetched) {
  isPermitted = false;
  start();
  ASSERT_TRUE(store->state().transcripts.isLoading);
  press();
  EXPECT_EQ(refusals, 1);
  isPermitted = true;
  press();
  EXPECT_TRUE(store->state().recording.isSwitching) << "a permission given since is found";
}

TEST_F(RecordingToggleTests, WhoIsNotSignedInIsToldOnceTheLaunchKnows) {
  isSignedIn = false;
  toggle.press(launch = store->send(Action::start{}));
  EXPECT_EQ(refusals, 0);
  runMainQueue();
  EXPECT_EQ(refusals, 1);
}

}  // namespace
}  // namespace vek::test
