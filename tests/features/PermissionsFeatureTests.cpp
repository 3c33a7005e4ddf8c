// SPDX-License-Identifier: MIT
#include "features/PermissionsFeature.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

#include "Clients/SpeechRecognitionProviderImpl.hpp"
#include "support/TestStore.hpp"

namespace vek {
namespace {

using test::TestStore;
using Feature = PermissionsFeature;
using State = Feature::State;
using Action = Feature::Action;
using Internal = Feature::InternalAction;

Action answer(bool value) {
  return Action::internal{Internal::hasRecordingPermissions{value}};
}
void isAllowed(State& state) {
  state.hasRecordingPermissions = true;
}

Task<bool> answered(bool value) {
  co_return value;
}
Task<bool> refused() {
  throw std::runtime_error("Open the settings.");
  co_return false;
}

/// A recogniser's client, or the choice between two, that answers by these.
template <class Client>
Client permitting(std::function<Task<bool>()> has, std::function<Task<bool>()> request = nullptr) {
  Client client;
  client.hasPermission = std::move(has);
  client.requestPermission = std::move(request);
  return client;
}

TEST(PermissionsFeatureTests, SetUpLooksAndDoesNotAsk) {
  TestStore<Feature> store({}, [](DependencyValues& values) {
    values.set(speechRcognitionProvider,
               permitting<SpeechRecognitionProvider>([] { return answered(true); }));
  });
  store.send(Action::setUp{});
  store.receive(answer(true), isAllowed);
}

TEST(PermissionsFeatureTests, ARefusalIsShownUntilDismissedAndAnAnswerWithoutOneIsNot) {
  bool isRefused = true;
  bool isGranted = false;
  TestStore<Feature> store({}, [&](DependencyValues& values) {
    values.set(speechRcognitionProvider, permitting<SpeechRecognitionProvider>(nullptr, [&] {
                 return isRefused ? refused() : answered(isGranted);
               }));
  });
  auto const request = [&] {
    store.send(Action::requestPermissionsClicked{}, [](State& state) { state.isLoading = true; });
  };
  request();
  store.receive<Action::internal>([](State& state, Action::internal const& received) {
    state.isLoading = false;
    state.error = std::get<Internal::permissionsRequestError>(received.action.value).error;
    EXPECT_EQ(state.error->localizedDescription(), "Open the settings.");
  });
  store.send(Action::dismissErrorButtonClicked{}, [](State& state) { state.error.reset(); });

  isRefused = false;
  request();
  store.receive(answer(false), [](State& state) { state.isLoading = false; });
  isGranted = true;
  request();
  store.receive(answer(true), [](State& state) {
    state.isLoading = false;
    isAllowed(state);
  });
}

TEST(PermissionsFeatureTests, AnotherProviderIsSeenWhenAskedAgain) {
  auto chosen = RecognitionProvider::apple;
  auto const provider = withDependencies(
      [](DependencyValues& values) {
        values.set(localSpeechRecognitionClient,
                   permitting<LocalSpeechRecognitionClient>([] { return answered(true); }));
        values.set(remoteSpeechRecognitionClient,
                   permitting<RemoteSpeechRecognitionClient>([] { return answered(false); }));
      },
      [&] {
        return SpeechRecognitionProviderImpl::client(
            std::make_shared<SpeechRecognitionProviderImpl>([&chosen] { return chosen; }));
      });
  TestStore<Feature> store(
      {}, [&](DependencyValues& values) { values.set(speechRcognitionProvider, provider); });
  store.send(Action::setUp{});
  store.receive(answer(true), isAllowed);
  chosen = RecognitionProvider::deepgram;
  test::runMainQueue();
  EXPECT_TRUE(store.state().hasRecordingPermissions);
  store.send(Action::setUp{});
  store.receive(answer(false), [](State& state) { state.hasRecordingPermissions = false; });
}

}  // namespace
}  // namespace vek
