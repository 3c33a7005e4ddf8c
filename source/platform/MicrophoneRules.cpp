// SPDX-License-Identifier: MIT
#include "platform/MicrophoneRules.hpp"

#include <optional>
#include <string_view>

#include "platform/Log.hpp"

namespace vek {

namespace {

std::optional<std::string_view> denial(MicrophoneRules const& rules) {
  if (isMicrophoneDeniedBySandbox(rules.sandboxInfo)) {
    return "The sandbox was built without access to the sound server.";
  }
  if (isMicrophoneDeniedByDesktop()) {
    return "The microphone is switched off in the desktop's privacy settings.";
  }
  if (isMicrophoneDeniedByPermissionStore(rules.patience)) {
    return "The permission store of the session denies the microphone.";
  }
  if (isMicrophoneDeniedBySoundServer(rules.soundServer, rules.patience)) {
    return "The sound server denies access.";
  }
  return std::nullopt;
}

}  // namespace

bool isMicrophoneAllowed(MicrophoneRules const& rules) {
  auto const reason = denial(rules);
  if (reason) Logger("microphone").error(*reason);
  return !reason;
}

}  // namespace vek
