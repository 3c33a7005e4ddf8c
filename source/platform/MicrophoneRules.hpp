// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace vek {

/// Where it is written whether programs may use the microphone. The defaults are this session's.
struct MicrophoneRules {
  /// What a sandbox tells the program in it about itself.
  std::filesystem::path sandboxInfo = "/.flatpak-info";
  /// The address of the sound server; empty for the user's own.
  std::string soundServer = {};
  /// How long the session bus and the sound server are waited for, each.
  std::chrono::milliseconds patience = std::chrono::seconds(2);
};

/// Whether this program may use the microphone; the log has the rule that says no. An ordinary
/// program may until something denies it, so a missing service, server or microphone, and one that
/// does not answer, is no denial. Any thread; blocks for at most twice the patience.
[[nodiscard]] bool isMicrophoneAllowed(MicrophoneRules const& rules = {});

// The single rules.

/// A sandbox that was built without the way to the sound server.
[[nodiscard]] bool isMicrophoneDeniedBySandbox(std::filesystem::path const& sandboxInfo);
/// The switch of the desktop's privacy settings.
[[nodiscard]] bool isMicrophoneDeniedByDesktop();
/// What the session's permission store holds on this program or, failing that, on all that are in
/// no sandbox.
[[nodiscard]] bool isMicrophoneDeniedByPermissionStore(std::chrono::milliseconds patience);
/// A sound server that refuses to talk to this user.
[[nodiscard]] bool isMicrophoneDeniedBySoundServer(std::string const& server,
                                                   std::chrono::milliseconds patience);

}  // namespace vek
