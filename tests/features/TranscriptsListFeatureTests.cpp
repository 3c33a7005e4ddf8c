// SPDX-License-Identifier: MIT
#include "features/TranscriptsListFeature.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>

#include "support/PendingCalls.hpp"
#include "support/Reports.hpp"
#include "support/TestStore.hpp"

namespace vek {
namespace {

using test::TestStore;
using Feature = TranscriptsListFeature;
using State = Feature::State;
using Action = Feature::Action;
using Internal = Feature::InternalAction;
using Child = TranscriptFeature;
using ChildInternal = Child::InternalAction;
using Content = TranscriptContentState;
using std::chrono_literals::operator""s;

Action internal(Internal action) {
  return Action::internal{std::move(action)};
}
Action child(UUID id, Child::Action action) {
  return Action::transcript{IdentifiedAction<UUID, Child::Action>::element{id, std::move(action)}};
}
Action told(Transcript const& transcript) {
  return child(transcript.id, Child::Action::internal{ChildInternal::delegate{
                                  Child::DelegateAction::didUpdateTranscript{transcript}}});
}

/// Rows of a list in no order, the newest in their midst. `count` is no multiple of 5.
std::vector<TranscriptMetadataDTO> rows(int count) {
  std::vector<TranscriptMetadataDTO> result;
  for (int i = 0; i < count; ++i) {
    result.push_back({.id = UUID::random(), .createdOn = Date((i * 5 + 3) % count * 1s)});
  }
  return result;
}

/// A backend whose answers the test gives.
class TranscriptsListFeatureTests : public testing::Test {
 protected:
  std::vector<CustomerDTO> const customers = {{.customerName = "Zoe", .id = UUID::random()},
                                              {.customerName = "Adam", .id = UUID::random()}};
  std::vector<TranscriptMetadataDTO> const metadata = rows(14);
  test::PendingCalls<std::vector<CustomerDTO>> customerCalls;
  test::PendingCalls<std::vector<TranscriptMetadataDTO>> metadataCalls;
  test::PendingCalls<TranscriptContentDTO> contentCalls;
  /// In the order of the calls.
  std::vector<UUID> fetched;

  auto dependencies() {
    return [this](DependencyValues& values) {
      APIClient api;
      api.getCustomers = [this] { return customerCalls.call(); };
      api.getAllTranscriptsMetadata = [this] { return metadataCalls.call(); };
      api.getTranscriptContent = [this](UUID id) {
        fetched.push_back(id);
        return contentCalls.call();
      };
      values.set(apiClient, api);
    };
  }

  static IdentifiedArray<Customer> list(std::vector<CustomerDTO> const& answer) {
    IdentifiedArray<Customer> result;
    for (auto const& customer : answer) result.set(Customer::from(customer));
    return result;
  }
  /// What the list shows of these rows.
  static IdentifiedArray<Transcript> loading(std::vector<TranscriptMetadataDTO> answer) {
    std::map<Date, TranscriptMetadataDTO, std::greater<>> newestFirst;
    for (auto& row : answer) newestFirst.emplace(row.createdOn, std::move(row));
    IdentifiedArray<Transcript> result;
    for (auto const& [date, row] : newestFirst) {
      auto transcript = Transcript::from(row);
      transcript.textState = transcript.analysisState = Content::loading{};
      result.set(transcript);
    }
    return result;
  }
  /// A list with two open windows that failed to load anew.
  [[nodiscard]] State loaded() const {
    State state{.transcripts = loading(metadata),
                .customers = list(customers),
                .error = ErrorObject(std::make_exception_ptr(std::runtime_error("old")))};
    for (std::size_t const i : {5U, 7U}) {
      state.openedTranscripts.set(
          {.transcript = state.transcripts[i], .customers = state.customers});
    }
    return state;
  }

  void setUp(TestStore<Feature>& store) {
    store.send(Action::setUp{}, [](State& state) { state.isLoading = true; });
    test::runMainQueue();
  }
  static void logOut(TestStore<Feature>& store) {
    store.send(Action::logOut{}, [](State& state) {
      state.transcripts = {};
      state.customers = {};
    });
  }
  void receiveLists(TestStore<Feature>& store) {
    customerCalls.answer(customers);
    metadataCalls.answer(metadata);
    store.receive(internal(Internal::didFetchCustomers{customers}),
                  [&](State& state) { state.customers = list(customers); });
    store.receive(internal(Internal::didFetchTranscriptsMetadata{metadata}),
                  [&](State& state) { state.transcripts = loading(metadata); });
    store.receive(internal(Internal::setIsLoading{false}),
                  [](State& state) { state.isLoading = false; });
    test::runMainQueue();
  }
};

TEST_F(TranscriptsListFeatureTests, EachTranscriptSettlesByItself) {
  auto state = loaded();
  state.transcripts = {};
  state.customers = {};
  TestStore<Feature> store(state, dependencies());
  setUp(store);
  receiveLists(store);
  // All at once, newest first.
  ASSERT_EQ(contentCalls.waiting(), metadata.size());
  auto const& shown = store.state().transcripts;
  for (std::size_t i = 0; i < fetched.size(); ++i) EXPECT_EQ(fetched[i], shown[i].id);
  for (std::size_t i = 0; i < fetched.size(); ++i) {
    auto const id = fetched[i];
    if (i % 7 == 0) {
      contentCalls.fail("no text " + std::to_string(i));
      store.receive<Action::internal>([&](State& state, Action::internal const& received) {
        auto const& failure = std::get<Internal::setTranscriptError>(received.action.value);
        EXPECT_EQ(failure.id, id);
        state.transcripts.update(id, [&](Transcript& transcript) {
          transcript.textState = transcript.analysisState = Content::error{failure.error};
        });
      });
      continue;
    }
    TranscriptContentDTO answer;
    if (i > 1) answer.transcript = "said";
    if (i > 2) answer.analysis = "# Analysis";
    contentCalls.answer(answer);
    store.receive(internal(Internal::setTranscriptContent{id, TranscriptContent::from(answer)}),
                  [&](State& state) {
                    state.transcripts.update(id, [&](Transcript& transcript) {
                      transcript.textState = Content::content{answer.transcript.value_or("")};
                      transcript.analysisState = Content::content{answer.analysis.value_or("")};
                    });
                  });
  }

  // A second time all are loading again.
  setUp(store);
  receiveLists(store);
  EXPECT_EQ(contentCalls.waiting(), metadata.size());
  logOut(store);
  auto const late = fetched[metadata.size()];
  contentCalls.answer({.transcript = "late"});
  store.receive(internal(
      Internal::setTranscriptContent{late, TranscriptContent::from({.transcript = "late"})}));
  while (contentCalls.waiting() > 0) {
    contentCalls.fail("late");
    store.receive<Action::internal>([](State&, auto const&) {});
  }
}

TEST_F(TranscriptsListFeatureTests, AFailedListKeepsWhatIsShownAndCanBeAskedForAgain) {
  enum class List { isPending, came, fails };
  struct Row {
    bool customersFail;
    List list;
    char const* error;
  };
  for (auto const& [customersFail, listCall, error] :
       {Row{true, List::isPending, "no customers"}, Row{true, List::came, "no customers"},
        Row{false, List::fails, "no list"}, Row{true, List::fails, "no customers"}}) {
    SCOPED_TRACE(testing::Message() << customersFail << static_cast<int>(listCall));
    TestStore<Feature> store(loaded(), dependencies());
    setUp(store);
    auto const cancelledBefore = metadataCalls.cancelled();
    if (listCall == List::fails) metadataCalls.fail("no list");
    if (listCall == List::came) metadataCalls.answer(metadata);
    test::runMainQueue();
    customersFail ? customerCalls.fail("no customers") : customerCalls.answer(customers);
    store.receive(internal(Internal::setIsLoading{false}),
                  [](State& state) { state.isLoading = false; });
    store.receive<Action::internal>([&](State& state, Action::internal const& received) {
      state.error = std::get<Internal::setError>(received.action.value).error;
      EXPECT_EQ(state.error->localizedDescription(), error);
    });
    bool const isPending = listCall == List::isPending;
    EXPECT_EQ(metadataCalls.cancelled() - cancelledBefore, isPending ? 1 : 0);
    if (isPending) metadataCalls.fail("nobody waits");

    store.send(Action::refetchContentButtonClicked{}, [](State& state) { state.error.reset(); });
    store.receive(Action::setUp{}, [](State& state) { state.isLoading = true; });
    test::runMainQueue();
    customerCalls.answer({});
    metadataCalls.answer({});
    store.receive(internal(Internal::didFetchCustomers{}),
                  [](State& state) { state.customers = {}; });
    store.receive(internal(Internal::didFetchTranscriptsMetadata{}),
                  [](State& state) { state.transcripts = {}; });
    store.receive(internal(Internal::setIsLoading{false}),
                  [](State& state) { state.isLoading = false; });
  }
}

TEST_F(TranscriptsListFeatureTests, ALogoutStopsNoListThatIsBeingFetched) {
  TestStore<Feature> store(loaded(), dependencies());
  auto const task = store.send(Action::setUp{}, [](State& state) { state.isLoading = true; });
  test::runMainQueue();
  logOut(store);
  receiveLists(store);
  task.cancel();
}

TEST_F(TranscriptsListFeatureTests, OfRowsWithOneIdentifierTheLaterWinsAndTheLogSaysSoOnce) {
  test::Reports const reports;
  auto repeated = metadata;
  for (int i = 0; i < 3; ++i) {
    repeated.push_back(metadata.back());
    repeated.back().customerID = UUID::random();
  }
  auto expected = metadata;
  expected.back().customerID = repeated.back().customerID;
  TestStore<Feature> store({}, dependencies());
  auto const task = store.send(internal(Internal::didFetchTranscriptsMetadata{repeated}),
                               [&](State& state) { state.transcripts = loading(expected); });
  test::runMainQueue();
  EXPECT_EQ(fetched.size(), metadata.size());
  task.cancel();

  auto renamed = customers;
  renamed.push_back({.customerName = "Zoe & Co", .id = customers.front().id});
  store.send(internal(Internal::didFetchCustomers{renamed}), [&](State& state) {
    state.customers =
        IdentifiedArray<Customer>({{customers[0].id, "Zoe & Co"}, {customers[1].id, "Adam"}});
  });
  EXPECT_THAT(reports.texts(),
              testing::ElementsAre("An answer of the backend repeats identifiers; 3 of its 17 rows "
                                   "were left out for later ones.",
                                   "An answer of the backend repeats identifiers; 1 of its 3 rows "
                                   "were left out for later ones."));
}

TEST_F(TranscriptsListFeatureTests, OfTwoLoadsAtOnceTheLastAnswerCounts) {
  TestStore<Feature> store({}, dependencies());
  setUp(store);
  store.send(Action::setUp{});
  test::runMainQueue();
  EXPECT_EQ(customerCalls.waiting(), 2U);
  receiveLists(store);
  auto const first = fetched.front();
  auto const newest = *std::ranges::max_element(metadata, {}, &TranscriptMetadataDTO::createdOn);
  customerCalls.answer({});
  metadataCalls.answer({newest});
  store.receive(internal(Internal::didFetchCustomers{}),
                [](State& state) { state.customers = {}; });
  store.receive(internal(Internal::didFetchTranscriptsMetadata{{newest}}),
                [&](State& state) { state.transcripts = loading({newest}); });
  store.receive(internal(Internal::setIsLoading{false}));
  test::runMainQueue();
  // Those of the first load still come, and change what the second left.
  for (auto const* text : {"first", "second"}) {
    if (text == std::string("second")) {
      while (contentCalls.waiting() > 1) {
        contentCalls.answer({});
        store.receive<Action::internal>([](State&, auto const&) {});
      }
    }
    contentCalls.answer({.transcript = text});
    store.receive(internal(Internal::setTranscriptContent{
                      first, TranscriptContent::from({.transcript = text})}),
                  [&](State& state) {
                    state.transcripts.update(first, [&](Transcript& transcript) {
                      transcript.textState = Content::content{text};
                      transcript.analysisState = Content::content{};
                    });
                  });
  }
}

TEST_F(TranscriptsListFeatureTests, AnOpenTranscriptIsACopyThatTellsTheListItsChanges) {
  TestStore<Feature> store(loaded(), dependencies());
  auto transcript = store.state().transcripts[3];
  auto const id = transcript.id;
  store.send(Action::openTrasnscript{transcript}, [&](State& state) {
    state.openedTranscripts.set({.transcript = transcript, .customers = list(customers)});
  });
  // Open already: the element keeps its state.
  auto other = transcript;
  other.textState = Content::content{SharedText("other")};
  store.send(Action::openTrasnscript{other});
  store.send(internal(Internal::didFetchCustomers{}), [](State& state) { state.customers = {}; });
  store.send(internal(Internal::setTranscriptContent{id, {}}), [&](State& state) {
    state.transcripts.update(id, [](Transcript& each) { each.setContent({}); });
  });

  store.send(child(id, Child::Action::refetchContentButtonClicked{}), [&](State& state) {
    state.openedTranscripts.update(
        id, [](Child::State& opened) { opened.transcript.analysisState = Content::loading{}; });
  });
  store.receive(told(transcript), [&](State& state) { state.transcripts.set(transcript); });
  test::runMainQueue();
  ASSERT_EQ(contentCalls.waiting(), 1U);

  // What a closed window waits for is stopped, and nothing of it arrives.
  store.send(Action::closeTranscript{id},
             [&](State& state) { state.openedTranscripts.remove(id); });
  EXPECT_EQ(contentCalls.cancelled(), 1);
  contentCalls.answer({.transcript = "late"});
  store.finish();
  test::Reports const reports;
  store.send(child(id, Child::Action::transcriptDidAppear{}));
  EXPECT_THAT(reports.texts(), testing::ElementsAre(testing::HasSubstr("missing element")));
}

}  // namespace
}  // namespace vek
