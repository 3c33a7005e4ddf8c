// SPDX-License-Identifier: MIT
#include "features/TranscriptFeature.hpp"

#include <gtest/gtest.h>

#include "support/PendingCalls.hpp"
#include "support/TestStore.hpp"

namespace vek {
namespace {

using test::TestStore;
using Feature = TranscriptFeature;
using State = Feature::State;
using Action = Feature::Action;
using Internal = Feature::InternalAction;
using Content = TranscriptContentState;

Action internal(Internal action) {
  return Action::internal{std::move(action)};
}
Action text(Content state) {
  return internal(Internal::updateTranscriptText{std::move(state)});
}
Action analysis(Content state) {
  return internal(Internal::updateTranscriptAnalysis{std::move(state)});
}
Content content(char const* words) {
  return Content::content{SharedText(words)};
}
Content failure() {
  return Content::error{ErrorObject(std::make_exception_ptr(std::runtime_error("old")))};
}

/// A backend whose answers the test gives.
class TranscriptFeatureTests : public testing::Test {
 protected:
  Customer const customer{.id = UUID::random(), .name = "Brightwater Dairy"};
  Transcript const transcript{.id = UUID::random(), .startDate = {}};
  test::PendingCalls<std::string> analyses;
  test::PendingCalls<TranscriptContentDTO> contents;
  test::PendingCalls<CompletedTranscriptDTO> completions;

  auto dependencies() {
    return [this](DependencyValues& values) {
      APIClient api;
      api.getTranscriptAnalysis = [this](std::string const& given) {
        EXPECT_EQ(given, "said");
        return analyses.call();
      };
      api.getTranscriptContent = [this](UUID id) {
        EXPECT_EQ(id, transcript.id);
        return contents.call();
      };
      api.completeTranscript = [this](UUID to, UUID id) {
        EXPECT_EQ(to, customer.id);
        EXPECT_EQ(id, transcript.id);
        return completions.call();
      };
      values.set(apiClient, api);
    };
  }

  [[nodiscard]] State opened(Content textState, Content analysisState) const {
    State state{.transcript = transcript};
    state.transcript.textState = std::move(textState);
    state.transcript.analysisState = std::move(analysisState);
    return state;
  }

  /// The one delegate action, with the whole transcript as it is now.
  static void expectTold(TestStore<Feature>& store) {
    Feature::DelegateAction::didUpdateTranscript told{store.state().transcript};
    store.receive(internal(Internal::delegate{std::move(told)}));
  }
  static void expectText(TestStore<Feature>& store, Content const& expected) {
    store.receive(text(expected), [&](State& state) { state.transcript.textState = expected; });
    expectTold(store);
  }
  static void expectAnalysis(TestStore<Feature>& store, Content const& expected) {
    store.receive(analysis(expected),
                  [&](State& state) { state.transcript.analysisState = expected; });
    expectTold(store);
  }
  static void expectFailure(TestStore<Feature>& store, Content Transcript::* field) {
    store.receive<Action::internal>([&](State& state, Action::internal const& received) {
      bool const isText = field == &Transcript::textState;
      auto const& failed =
          isText ? std::get<Internal::updateTranscriptText>(received.action.value).state
                 : std::get<Internal::updateTranscriptAnalysis>(received.action.value).state;
      ASSERT_TRUE(failed.as<Content::error>());
      EXPECT_EQ(failed.as<Content::error>()->object.localizedDescription(), "It rains in.");
      state.transcript.*field = failed;
    });
    expectTold(store);
  }
};

TEST_F(TranscriptFeatureTests, AppearingGetsAnAnalysisWhereOneIsMissingForAText) {
  struct Row {
    char const* name = "";
    Content text;
    Content analysis;
    bool isAsked = false;
  };
  for (auto const& [name, textState, analysisState, isAsked] :
       {Row{"initial", content("said"), Content::initial{}, true},
        Row{"failed", content("said"), failure(), true},
        Row{"loading", content("said"), Content::loading{}, false},
        Row{"there", content("said"), content("analysis"), false},
        Row{"there and empty", content("said"), content(""), false},
        Row{"empty text", content(""), failure(), false},
        Row{"loading text", Content::loading{}, Content::initial{}, false},
        Row{"failed text", failure(), failure(), false},
        Row{"no text", Content::initial{}, Content::initial{}, false}}) {
    SCOPED_TRACE(name);
    TestStore<Feature> store(opened(textState, analysisState), dependencies());
    if (!isAsked) {
      store.send(Action::transcriptDidAppear{});
      continue;
    }
    store.send(Action::transcriptDidAppear{},
               [](State& state) { state.transcript.analysisState = Content::loading{}; });
    test::runMainQueue();
    store.send(Action::transcriptDidAppear{});
    analyses.answer("# Analysis");
    expectAnalysis(store, content("# Analysis"));
  }
}

TEST_F(TranscriptFeatureTests, AFailedAnalysisIsShownInItsPlace) {
  TestStore<Feature> store(opened(content("said"), Content::initial{}), dependencies());
  store.send(Action::transcriptDidAppear{},
             [](State& state) { state.transcript.analysisState = Content::loading{}; });
  test::runMainQueue();
  analyses.fail("It rains in.");
  expectFailure(store, &Transcript::analysisState);
  EXPECT_FALSE(store.state().error);
}

TEST_F(TranscriptFeatureTests, ARefetchReplacesWhatComesAndKeepsATextThatWasThere) {
  for (bool const hadText : {true, false}) {
    for (bool const fails : {true, false}) {
      SCOPED_TRACE(testing::Message() << "had text " << hadText << ", fails " << fails);
      auto state = opened(hadText ? content("said") : failure(), content("analysis"));
      state.error = failure().as<Content::error>()->object;
      TestStore<Feature> store(state, dependencies());
      store.send(Action::refetchContentButtonClicked{}, [&](State& after) {
        after.error.reset();
        if (!hadText) after.transcript.textState = Content::loading{};
        after.transcript.analysisState = Content::loading{};
      });
      expectTold(store);
      if (fails) {
        contents.fail("It rains in.");
        if (!hadText) expectFailure(store, &Transcript::textState);
        expectFailure(store, &Transcript::analysisState);
      } else {
        auto const* again = hadText ? "# Analysis again" : "";
        contents.answer({.transcript = "said again",
                         .analysis = hadText ? std::optional<std::string>(again) : std::nullopt});
        expectText(store, content("said again"));
        expectAnalysis(store, content(again));
        // What is missing now counts as an empty analysis, which is not asked for.
        store.send(Action::transcriptDidAppear{});
      }
    }
  }
}

TEST_F(TranscriptFeatureTests, OfTwoRefetchesAtOnceTheLaterAnswerCounts) {
  TestStore<Feature> store(opened(content("said"), Content::loading{}), dependencies());
  for (int i = 0; i < 2; ++i) {
    store.send(Action::refetchContentButtonClicked{});
    expectTold(store);
  }
  test::runMainQueue();
  ASSERT_EQ(contents.waiting(), 2U);
  for (auto const* words : {"first", "second"}) {
    contents.answer({.transcript = words, .analysis = "# Analysis"});
    expectText(store, content(words));
    // Of the second it is the same: nothing changes, and it is told all the same.
    expectAnalysis(store, content("# Analysis"));
  }
}

TEST_F(TranscriptFeatureTests, ACustomerIsAssignedOnceChosenWhereThereIsNone) {
  TestStore<Feature> store(opened(content("said"), content("")), dependencies());
  store.send(Action::assignCustomerButtonClicked{});
  store.send(Action::customerPickerClicked{customer},
             [&](State& state) { state.selectedCustomer = customer; });
  auto const assigns = [](State& state) {
    state.assigningCustomer = true;
    state.error.reset();
  };
  store.send(Action::assignCustomerButtonClicked{}, assigns);
  test::runMainQueue();
  completions.fail("It rains in.");
  store.receive(internal(Internal::setAssigningCustomer{false}),
                [](State& state) { state.assigningCustomer = false; });
  store.receive<Action::internal>([](State& state, Action::internal const& received) {
    state.error = std::get<Internal::setError>(received.action.value).error;
    EXPECT_EQ(state.error->localizedDescription(), "It rains in.");
  });

  // The button is what keeps a second press away.
  store.send(Action::assignCustomerButtonClicked{}, assigns);
  store.send(Action::assignCustomerButtonClicked{});
  test::runMainQueue();
  EXPECT_EQ(completions.waiting(), 2U);
  for (bool const isFirst : {true, false}) {
    completions.answer({});
    store.receive(internal(Internal::didAssignCustomer{customer.id}), [&](State& state) {
      state.assigningCustomer = false;
      if (isFirst) state.transcript.customerID = customer.id;
    });
    expectTold(store);
  }
  store.send(Action::assignCustomerButtonClicked{});
  store.send(Action::customerPickerClicked{std::nullopt},
             [](State& state) { state.selectedCustomer.reset(); });
}

}  // namespace
}  // namespace vek
