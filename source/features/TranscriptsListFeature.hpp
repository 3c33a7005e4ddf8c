// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "features/TranscriptFeature.hpp"
#include "records/CustomerDTO.hpp"
#include "records/TranscriptContent.hpp"
#include "records/TranscriptMetadataDTO.hpp"
#include "runtime/ForEach.hpp"
#include "runtime/IdentifiedAction.hpp"
#include "runtime/Sum.hpp"

namespace vek {

/// What the user can browse: the list of transcripts with their texts, the customers, and the
/// transcripts that are open.
struct TranscriptsListFeature {
  struct State {
    /// Newest first.
    IdentifiedArray<Transcript> transcripts = {};
    /// In the order of the backend's answer.
    IdentifiedArray<Customer> customers = {};
    /// A list fetch is under way.
    bool isLoading = false;
    /// The failure of the last list fetch.
    std::optional<ErrorObject> error = {};
    /// One for each open window, in order of opening.
    IdentifiedArray<TranscriptFeature::State> openedTranscripts = {};
    ObservationIdentity identity = {};
    bool operator==(State const&) const = default;
  };

  struct InternalActionCases {
    struct setIsLoading {
      bool value;
      bool operator==(setIsLoading const&) const = default;
    };
    struct setError {
      std::optional<ErrorObject> error;
      bool operator==(setError const&) const = default;
    };
    struct didFetchTranscriptsMetadata {
      std::vector<TranscriptMetadataDTO> metadata;
      bool operator==(didFetchTranscriptsMetadata const&) const = default;
    };
    struct didFetchCustomers {
      std::vector<CustomerDTO> customers;
      bool operator==(didFetchCustomers const&) const = default;
    };
    struct setTranscriptContent {
      UUID id;
      TranscriptContent content;
      bool operator==(setTranscriptContent const&) const = default;
    };
    struct setTranscriptError {
      UUID id;
      ErrorObject error;
      bool operator==(setTranscriptError const&) const = default;
    };
  };
  struct InternalAction
      : InternalActionCases,
        Sum<InternalActionCases::setIsLoading, InternalActionCases::setError,
            InternalActionCases::didFetchTranscriptsMetadata,
            InternalActionCases::didFetchCustomers, InternalActionCases::setTranscriptContent,
            InternalActionCases::setTranscriptError> {
    using Sum::Sum;
  };

  struct ActionCases {
    struct openTrasnscript {
      Transcript transcript;
      bool operator==(openTrasnscript const&) const = default;
    };
    struct closeTranscript {
      UUID id;
      bool operator==(closeTranscript const&) const = default;
    };
    struct transcript {
      IdentifiedAction<UUID, TranscriptFeature::Action> action;
      bool operator==(transcript const&) const = default;
    };
    struct internal {
      InternalAction action;
      bool operator==(internal const&) const = default;
    };
    struct setUp {
      bool operator==(setUp const&) const = default;
    };
    struct logOut {
      bool operator==(logOut const&) const = default;
    };
    struct refetchContentButtonClicked {
      bool operator==(refetchContentButtonClicked const&) const = default;
    };
  };
  struct Action : ActionCases,
                  Sum<ActionCases::openTrasnscript, ActionCases::closeTranscript,
                      ActionCases::transcript, ActionCases::internal, ActionCases::setUp,
                      ActionCases::logOut, ActionCases::refetchContentButtonClicked> {
    using Sum::Sum;
  };

  Effect<Action> reduce(State& state, Action const& action) const {
    return withOpenedTranscripts.reduce(state, action);
  }

 private:
  /// The list's own step.
  struct List {
    using State = TranscriptsListFeature::State;
    using Action = TranscriptsListFeature::Action;
    using Send = vek::Send<Action>;
    using API = Dependency<APIClientKey>;

    Effect<Action> reduce(State& state, Action const& action) const;
    Effect<Action> reduceInternal(State& state, InternalAction const& action) const;
    Effect<Action> showList(State& state, std::vector<TranscriptMetadataDTO> const& metadata) const;

    static Task<> loadEffect(API apiClient, Send send);
    static Task<> contentsEffect(API apiClient, std::vector<UUID> ids, Send send);

    API apiClient;
  };

  using OpenedTranscripts = KeyPath<&State::openedTranscripts>;
  using OpenedTranscript = CasePath<Action, Action::transcript>;

  _ForEachReducer<List, OpenedTranscripts, OpenedTranscript, TranscriptFeature>
      withOpenedTranscripts =
          forEach<OpenedTranscripts, OpenedTranscript>(List(), TranscriptFeature());
};

}  // namespace vek
