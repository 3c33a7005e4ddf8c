// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "Clients/APIClient.hpp"
#include "Clients/SpeechRecognitionProvider.hpp"
#include "features/Recording.hpp"
#include "records/NewTranscriptDTO.hpp"
#include "records/RecordingTranscript.hpp"
#include "runtime/DateGenerator.hpp"
#include "runtime/Dependency.hpp"
#include "runtime/Effect.hpp"
#include "runtime/ErrorObject.hpp"
#include "runtime/ObservationIdentity.hpp"
#include "runtime/Sum.hpp"

namespace vek {

/// The state machine behind the record button: makes a transcript on the backend, runs the
/// recogniser, folds its pieces into one growing text, pushes each finished piece and saves what is
/// pending at stop.
struct RecordingFeature {
  struct State {
    /// A backend call of this feature is in flight. While true the record button does nothing.
    bool isLoading = false;
    /// The recording under way.
    std::optional<Recording> recording = {};
    /// Shown until dismissed.
    std::optional<ErrorObject> error = {};
    /// The whole text that the backend has acknowledged so far.
    std::optional<SharedText> lastAppendedTranscript = {};
    /// A press has begun to start or to stop the recording; another one would do that twice.
    bool isSwitching = false;
    ObservationIdentity identity = {};

    /// Minutes and seconds since the start by the system's clock, with hours from the first on;
    /// "--:--" without a recording.
    [[nodiscard]] std::string elapsedTimeText() const;
    /// All text of the recording, the pending piece included; "--:--" without one.
    [[nodiscard]] std::string displayedTranscript() const;

    bool operator==(State const&) const = default;
  };

  struct InternalActionCases {
    struct setIsLoading {
      bool value;
      bool operator==(setIsLoading const&) const = default;
    };
    struct startRecording {
      NewTranscriptDTO transcript;
      bool operator==(startRecording const&) const = default;
    };
    struct updateTranscript {
      RecordingTranscript piece;
      bool operator==(updateTranscript const&) const = default;
    };
    struct recordingError {
      std::optional<ErrorObject> error;
      bool operator==(recordingError const&) const = default;
    };
    struct updateLastAppendedTranscript {
      std::optional<SharedText> text;
      bool operator==(updateLastAppendedTranscript const&) const = default;
    };
    struct resetState {
      bool operator==(resetState const&) const = default;
    };
  };
  struct InternalAction
      : InternalActionCases,
        Sum<InternalActionCases::setIsLoading, InternalActionCases::startRecording,
            InternalActionCases::updateTranscript, InternalActionCases::recordingError,
            InternalActionCases::updateLastAppendedTranscript, InternalActionCases::resetState> {
    using Sum::Sum;
  };

  struct DelegateActionCases {
    struct didFinishRecordingTranscript {
      bool operator==(didFinishRecordingTranscript const&) const = default;
    };
  };
  struct DelegateAction : DelegateActionCases,
                          Sum<DelegateActionCases::didFinishRecordingTranscript> {
    using Sum::Sum;
  };

  struct ActionCases {
    struct internal {
      InternalAction action;
      bool operator==(internal const&) const = default;
    };
    struct recordButtonClicked {
      bool operator==(recordButtonClicked const&) const = default;
    };
    struct dismissErrorButtonClicked {
      bool operator==(dismissErrorButtonClicked const&) const = default;
    };
    struct delegate {
      DelegateAction action;
      bool operator==(delegate const&) const = default;
    };
  };
  struct Action : ActionCases,
                  Sum<ActionCases::internal, ActionCases::recordButtonClicked,
                      ActionCases::dismissErrorButtonClicked, ActionCases::delegate> {
    using Sum::Sum;
  };

  enum class CancelID : bool { recording };

  Effect<Action> reduce(State& state, Action const& action) const;

 private:
  using Send = vek::Send<Action>;
  using Provider = Dependency<SpeechRecognitionProviderKey>;
  using API = Dependency<APIClientKey>;

  Effect<Action> reduceInternal(State& state, InternalAction const& action) const;
  Effect<Action> addPiece(State& state, RecordingTranscript const& piece) const;

  static Task<> startEffect(API apiClient, Send send);
  static Task<> recognitionEffect(Provider provider, Send send);
  static Task<> forwardPieces(Provider provider, Send send);
  static Task<> appendEffect(API apiClient, std::string delta, UUID id, SharedText text, Send send);
  static Task<> stopEffect(Provider provider, API apiClient, State state, Recording recording,
                           Send send);

  Provider speechRcognitionProvider;
  API apiClient;
  Dependency<DateKey> date;
};

}  // namespace vek
