// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vek::services {

/// A command line that says nothing that can be done; the text says why.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The command line of `vek-services`.
struct Options {
  std::filesystem::path data;
  std::uint16_t port = 8443;
  /// URL of a chat-completions endpoint that makes the analyses; empty for none.
  std::string chatCompletions;
  std::string chatModel = "default";
  /// How long access tokens hold, and how long a key signs tokens.
  std::chrono::seconds accessTokenLifetime = std::chrono::hours(1);
  std::chrono::seconds keyLifetime = std::chrono::days(1);
  /// What the list of updates offers; empty for the version that this is.
  std::string updateVersion;
  bool asksForHelp = false;

  /// Reads the arguments after the program's name. Throws `UsageError`.
  static Options parse(std::span<char const* const> arguments);
  static std::string_view help();
};

}  // namespace vek::services
