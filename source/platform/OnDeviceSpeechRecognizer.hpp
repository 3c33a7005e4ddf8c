// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/SpeechEngine.hpp"
#include "platform/SpeechRecognizer.hpp"

namespace vek {

/// How long the models stay in memory after their last use.
inline constexpr std::chrono::seconds keepSpeechModelsFor{60};

/// What the recogniser on this machine stands on.
struct OnDeviceSpeechParts {
  std::shared_ptr<SpeechEngine> engine;
  /// Why the engine's models could not be loaded, as far as can be told at once.
  std::function<std::optional<std::string>()> problem;
  std::function<SpeechRecognizerAuthorizationStatus()> authorizationStatus;
};

/// An engine with the models in a folder, and no wish of the user against their use. The models
/// stay in memory for `keepModelsFor` after their last use.
OnDeviceSpeechParts installedSpeechParts(
    std::filesystem::path const& folder,
    std::chrono::milliseconds keepModelsFor = keepSpeechModelsFor);

/// A recogniser of US English that runs on this machine alone. All its tasks share one thread
/// and one set of models.
SpeechRecognizerOperations onDeviceSpeechRecognizer(OnDeviceSpeechParts parts);

/// The one of this process, with the models of the deployment, for who may use the microphone. Its
/// authorization is looked up anew each time and blocks for as long as `isMicrophoneAllowed` does.
SpeechRecognizerOperations const& sharedSpeechRecognizer();

/// Ends the work of that one for good and waits for it. For the end of a program: the models'
/// library must not be taken down while it is still loading them.
void stopSharedSpeechRecognizer();

}  // namespace vek
