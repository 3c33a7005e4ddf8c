// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <utility>

#include "Clients/APIClient.hpp"
#include "records/Customer.hpp"
#include "records/Transcript.hpp"
#include "runtime/Dependency.hpp"
#include "runtime/Effect.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/IdentifiedArray.hpp"
#include "runtime/ObservationIdentity.hpp"
#include "runtime/Sum.hpp"

namespace vek {

/// One opened transcript: shows its text and analysis, gets an analysis where none is there and
/// assigns a customer. What changes is told to the list.
struct TranscriptFeature {
  struct State {
    /// This window's own copy.
    Transcript transcript;
    /// The choice in the customer picker.
    std::optional<Customer> selectedCustomer = {};
    /// The failure of the last refetch start or assignment.
    std::optional<ErrorObject> error = {};
    /// Fixed at opening.
    IdentifiedArray<Customer> customers = {};
    /// An assignment is under way.
    bool assigningCustomer = false;
    ObservationIdentity identity = {};

    [[nodiscard]] UUID const& id() const { return transcript.id; }
    bool operator==(State const&) const = default;
  };

  struct DelegateActionCases {
    struct didUpdateTranscript {
      Transcript transcript;
      bool operator==(didUpdateTranscript const&) const = default;
    };
  };
  struct DelegateAction : DelegateActionCases, Sum<DelegateActionCases::didUpdateTranscript> {
    using Sum::Sum;
  };

  struct InternalActionCases {
    struct updateTranscriptAnalysis {
      TranscriptContentState state;
      bool operator==(updateTranscriptAnalysis const&) const = default;
    };
    struct updateTranscriptText {
      TranscriptContentState state;
      bool operator==(updateTranscriptText const&) const = default;
    };
    struct didAssignCustomer {
      UUID customerID;
      bool operator==(didAssignCustomer const&) const = default;
    };
    struct setError {
      std::optional<ErrorObject> error;
      bool operator==(setError const&) const = default;
    };
    struct setAssigningCustomer {
      bool value;
      bool operator==(setAssigningCustomer const&) const = default;
    };
    struct delegate {
      DelegateAction action;
      bool operator==(delegate const&) const = default;
    };
  };
  struct InternalAction
      : InternalActionCases,
        Sum<InternalActionCases::updateTranscriptAnalysis,
            InternalActionCases::updateTranscriptText, InternalActionCases::didAssignCustomer,
            InternalActionCases::setError, InternalActionCases::setAssigningCustomer,
            InternalActionCases::delegate> {
    using Sum::Sum;
  };

  struct ActionCases {
    struct customerPickerClicked {
      std::optional<Customer> customer;
      bool operator==(customerPickerClicked const&) const = default;
    };
    struct internal {
      InternalAction action;
      bool operator==(internal const&) const = default;
    };
    struct transcriptDidAppear {
      bool operator==(transcriptDidAppear const&) const = default;
    };
    struct refetchContentButtonClicked {
      bool operator==(refetchContentButtonClicked const&) const = default;
    };
    struct assignCustomerButtonClicked {
      bool operator==(assignCustomerButtonClicked const&) const = default;
    };
  };
  struct Action : ActionCases,
                  Sum<ActionCases::customerPickerClicked, ActionCases::internal,
                      ActionCases::transcriptDidAppear, ActionCases::refetchContentButtonClicked,
                      ActionCases::assignCustomerButtonClicked> {
    using Sum::Sum;
  };

  Effect<Action> reduce(State& state, Action const& action) const;

 private:
  using Send = vek::Send<Action>;
  using API = Dependency<APIClientKey>;

  Effect<Action> reduceAppearance(State& state) const;
  Effect<Action> reduceRefetch(State& state) const;
  Effect<Action> reduceAssignment(State& state) const;
  static Effect<Action> reduceInternal(State& state, InternalAction const& action);

  static Task<> analysisEffect(API apiClient, SharedText text, Send send);
  static Task<> refetchEffect(API apiClient, Transcript transcript, Send send);
  static Task<> assignmentEffect(API apiClient, UUID customer, UUID transcript, Send send);

  API apiClient;
};

}  // namespace vek
