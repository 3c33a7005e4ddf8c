// SPDX-License-Identifier: MIT
#include "features/TranscriptsListFeature.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <stop_token>
#include <unordered_map>
#include <utility>

#include "runtime/Match.hpp"
#include "runtime/Report.hpp"
#include "runtime/WhenAll.hpp"

namespace vek {

namespace {

using Action = TranscriptsListFeature::Action;
using InternalAction = TranscriptsListFeature::InternalAction;
using API = Dependency<APIClientKey>;
using Sender = Send<Action>;

/// How many fetches are started in one piece of the main thread's work.
constexpr std::size_t groupSize = 64;

using Child = TranscriptFeature;
using ChildAction = IdentifiedAction<UUID, Child::Action>::element;
using ChildFact = Child::DelegateAction::didUpdateTranscript;

Action internal(InternalAction action) {
  return Action::internal{std::move(action)};
}

/// Reduces rows that repeat an identifier to one: the later row wins, in the place of the first.
template <class Row>
void removeRepeated(std::vector<Row>& rows) {
  std::unordered_map<UUID, std::size_t> places;
  places.reserve(rows.size());
  std::size_t kept = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    auto const place = places.try_emplace(rows[i].id, kept).first->second;
    if (place == kept) ++kept;
    if (place != i) rows[place] = std::move(rows[i]);
  }
  if (kept == rows.size()) return;
  report(
      fmt::format("An answer of the backend repeats identifiers; {} of its {} rows were left "
                  "out for later ones.",
                  rows.size() - kept, rows.size()));
  rows.resize(kept);
}

/// Shows what an open transcript tells of itself. The rest of what it does is its own.
void reduceDelegate(TranscriptsListFeature::State& state, Child::Action const& action) {
  auto const* inner = std::get_if<Child::Action::internal>(&action.value);
  if (!inner) return;
  auto const* told = std::get_if<Child::InternalAction::delegate>(&inner->action.value);
  if (!told) return;
  match(told->action, [&](ChildFact const& fact) { state.transcripts.set(fact.transcript); });
}

struct Lists {
  std::vector<CustomerDTO> customers;
  std::vector<TranscriptMetadataDTO> metadata;
};

Task<Result<std::vector<CustomerDTO>>> fetchCustomers(API const& apiClient, std::stop_source stop) {
  auto customers = co_await attempt(apiClient->getCustomers());
  if (!customers) stop.request_stop();
  co_return customers;
}

/// Both at the same time. When both fail, it is the customers' failure that is thrown.
Task<Lists> fetchLists(API const& apiClient) {
  std::stop_source const withoutCustomers;
  auto [customers, metadata] = co_await whenAll(
      fetchCustomers(apiClient, withoutCustomers),
      attempt(withStop(withoutCustomers.get_token(), apiClient->getAllTranscriptsMetadata())));
  co_return Lists{std::move(customers).value(), std::move(metadata).value()};
}

Task<> fetchContent(API const& apiClient, UUID id, Sender const& send) {
  auto content = co_await attempt(apiClient->getTranscriptContent(id));
  if (content) {
    auto texts = TranscriptContent::from(std::move(content).value());
    send(internal(InternalAction::setTranscriptContent{id, std::move(texts)}));
  } else {
    send(internal(InternalAction::setTranscriptError{id, ErrorObject(content.error())}));
  }
}

Task<> fetchGroup(API const& apiClient, std::span<UUID const> ids, Sender const& send) {
  std::vector<Task<>> fetches;
  fetches.reserve(ids.size());
  for (auto const& id : ids) fetches.push_back(fetchContent(apiClient, id, send));
  co_await whenAll(std::move(fetches));
}

}  // namespace

Effect<Action> TranscriptsListFeature::List::reduce(State& state, Action const& action) const {
  return match(
      action,
      [&](Action::openTrasnscript const& open) {
        if (!state.openedTranscripts.contains(open.transcript.id)) {
          state.openedTranscripts.set(
              {.transcript = open.transcript, .customers = state.customers});
        }
        return Effect<Action>::none();
      },
      [&](Action::closeTranscript close) {
        state.openedTranscripts.remove(close.id);
        return Effect<Action>::none();
      },
      [&](Action::transcript const& child) {
        match(child.action, [&](ChildAction const& each) { reduceDelegate(state, each.action); });
        return Effect<Action>::none();
      },
      [&](Action::internal const& internal) { return reduceInternal(state, internal.action); },
      [&](Action::setUp) {
        state.isLoading = true;
        return Effect<Action>::run([api = apiClient](Send send) { return loadEffect(api, send); });
      },
      [&](Action::logOut) {
        state.transcripts = {};
        state.customers = {};
        return Effect<Action>::none();
      },
      [&](Action::refetchContentButtonClicked) {
        state.error.reset();
        return Effect<Action>::send(Action::setUp{});
      });
}

Effect<Action> TranscriptsListFeature::List::reduceInternal(State& state,
                                                            InternalAction const& action) const {
  return match(
      action,
      [&](InternalAction::setIsLoading set) {
        state.isLoading = set.value;
        return Effect<Action>::none();
      },
      [&](InternalAction::setError const& set) {
        state.error = set.error;
        return Effect<Action>::none();
      },
      [&](InternalAction::didFetchTranscriptsMetadata const& fetched) {
        return showList(state, fetched.metadata);
      },
      [&](InternalAction::didFetchCustomers const& fetched) {
        std::vector<Customer> customers;
        customers.reserve(fetched.customers.size());
        for (auto const& customer : fetched.customers)
          customers.push_back(Customer::from(customer));
        removeRepeated(customers);
        state.customers = IdentifiedArray(std::move(customers));
        return Effect<Action>::none();
      },
      [&](InternalAction::setTranscriptContent const& set) {
        state.transcripts.update(
            set.id, [&](Transcript& transcript) { transcript.setContent(set.content); });
        return Effect<Action>::none();
      },
      [&](InternalAction::setTranscriptError const& set) {
        state.transcripts.update(set.id, [&](Transcript& transcript) {
          transcript.textState = TranscriptContentState::error{set.error};
          transcript.analysisState = transcript.textState;
        });
        return Effect<Action>::none();
      });
}

/// Shows the rows as loading, newest first, and fetches the content of each.
Effect<Action> TranscriptsListFeature::List::showList(
    State& state, std::vector<TranscriptMetadataDTO> const& metadata) const {
  std::vector<Transcript> transcripts;
  transcripts.reserve(metadata.size());
  for (auto const& row : metadata) {
    transcripts.push_back(Transcript::from(row));
    transcripts.back().textState = TranscriptContentState::loading{};
    transcripts.back().analysisState = TranscriptContentState::loading{};
  }
  removeRepeated(transcripts);
  std::ranges::sort(transcripts, std::ranges::greater(), &Transcript::startDate);
  std::vector<UUID> ids;
  ids.reserve(transcripts.size());
  for (auto const& transcript : transcripts) ids.push_back(transcript.id);
  state.transcripts = IdentifiedArray(std::move(transcripts));
  return Effect<Action>::run([api = apiClient, ids = std::move(ids)](Send send) {
    return contentsEffect(api, ids, send);
  });
}

Task<> TranscriptsListFeature::List::loadEffect(API apiClient, Send send) {
  auto lists = co_await attempt(fetchLists(apiClient));
  if (lists) {
    auto [customers, metadata] = std::move(lists).value();
    send(internal(InternalAction::didFetchCustomers{std::move(customers)}));
    send(internal(InternalAction::didFetchTranscriptsMetadata{std::move(metadata)}));
    send(internal(InternalAction::setIsLoading{false}));
  } else {
    send(internal(InternalAction::setIsLoading{false}));
    send(internal(InternalAction::setError{ErrorObject(lists.error())}));
  }
}

/// All at once. They are only started in groups, or the main thread would have no time for
/// anything else meanwhile.
Task<> TranscriptsListFeature::List::contentsEffect(API apiClient, std::vector<UUID> ids,
                                                    Send send) {
  std::vector<Task<>> groups;
  for (std::span<UUID const> left = ids; !left.empty();) {
    auto const group = left.first(std::min(groupSize, left.size()));
    groups.push_back(fetchGroup(apiClient, group, send));
    left = left.subspan(group.size());
  }
  co_await whenAll(std::move(groups));
}

}  // namespace vek
