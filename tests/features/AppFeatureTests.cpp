// SPDX-License-Identifier: MIT
#include "features/AppFeature.hpp"

#include <gtest/gtest.h>

#include "support/PendingCalls.hpp"
#include "support/TestStore.hpp"

namespace vek {
namespace {

using test::TestStore;
using State = AppFeature::State;
using Action = AppFeature::Action;
using List = TranscriptsListFeature::Action;
using SessionFact = SessionFeature::DelegateAction;

Action session(SessionFact fact) {
  return Action::session{SessionFeature::Action::delegate{std::move(fact)}};
}

Action const didFinish = Action::recording{RecordingFeature::Action::delegate{
    RecordingFeature::DelegateAction::didFinishRecordingTranscript{}}};
Action const setUpList = Action::transcripts{List::setUp{}};

/// A backend that never answers.
test::PendingCalls<std::vector<CustomerDTO>> customerCalls;
test::PendingCalls<std::vector<TranscriptMetadataDTO>> metadataCalls;

/// Clients of which none has anything to say.
void silence(DependencyValues& values) {
  APIClient api;
  api.getCustomers = [] { return customerCalls.call(); };
  api.getAllTranscriptsMetadata = [] { return metadataCalls.call(); };
  values.set(apiClient, api);
  SpeechRecognitionProvider provider;
  provider.hasPermission = []() -> Task<bool> { throw CancellationError(); };
  values.set(speechRcognitionProvider, provider);
  CredentialsClient store;
  store.credentials = []() -> Task<Credentials> { throw CancellationError(); };
  values.set(credentialsClient, store);
}

TEST(AppFeatureTests, StartAsksForPermissionsFirstAndForTheSessionSecond) {
  TestStore<AppFeature> store({}, silence);
  for (int time = 0; time < 2; ++time) {
    store.send(Action::start{});
    store.receive(Action::permissions{PermissionsFeature::Action::setUp{}});
    store.receive(Action::session{SessionFeature::Action::setUp{}});
  }
}

TEST(AppFeatureTests, CarriesThreeFactsAndNoOther) {
  TestStore<AppFeature> store({}, silence);
  auto const loggedIn = store.send(session(SessionFact::isLoggedIn{}));
  store.receive(setUpList, [](State& state) { state.transcripts.isLoading = true; });
  auto const recorded = store.send(didFinish);
  store.receive(setUpList);
  store.send(session(SessionFact::didLogOut{}));
  store.receive(Action::transcripts{List::logOut{}});
  loggedIn.cancel();
  recorded.cancel();
  store.send(Action::session{SessionFeature::Action::dismissErrorButtonClicked{}});
  store.send(Action::menu{MenuFeature::Action::aboutMenuItemClicked{}});
  store.send(Action::permissions{PermissionsFeature::Action::setUp{}});
}

TEST(AppFeatureTests, ALogoutClearsTheListAndLeavesARecordingAlone) {
  State state;
  state.recording.recording = Recording{.id = UUID::random()};
  state.transcripts.transcripts.set({.id = UUID::random(), .startDate = {}});
  state.transcripts.customers.set({.id = UUID::random(), .name = "Harbour Bakery"});
  TestStore<AppFeature> store(state, AppFeature());
  store.send(session(SessionFact::didLogOut{}));
  store.receive(Action::transcripts{List::logOut{}},
                [](State& after) { after.transcripts = TranscriptsListFeature::State(); });
}

TEST(AppFeatureTests, LoadsWhileAnyButTheSessionDoes) {
  State state;
  EXPECT_FALSE(state.isLoading());
  state.session.isLoading = true;
  EXPECT_FALSE(state.isLoading());
  for (auto* const part :
       {&state.recording.isLoading, &state.permissions.isLoading, &state.transcripts.isLoading}) {
    *part = true;
    EXPECT_TRUE(state.isLoading());
    *part = false;
  }
}

TEST(AppFeatureTests, AChildSeesItsActionBeforeTheRootDoes) {
  State state;
  state.recording.error = ErrorObject(std::make_exception_ptr(std::runtime_error("old")));
  TestStore<AppFeature> store(state, AppFeature());
  store.send(Action::recording{RecordingFeature::Action::dismissErrorButtonClicked{}},
             [](State& after) { after.recording.error.reset(); });
}

}  // namespace
}  // namespace vek
