// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Clients/RecognitionProvider.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// What a person typed behind `vekctl`.
struct CommandLine {
  /// Makes a recording until it is told to stop.
  struct Record {
    /// A WAV file in place of the microphone.
    std::optional<std::filesystem::path> file = {};
    /// In place of the setting, for this run.
    std::optional<RecognitionProvider> provider = {};
    /// Stops by itself after so long.
    std::optional<std::chrono::duration<double>> duration = {};
  };
  struct Transcribe {
    std::vector<std::filesystem::path> files;
  };
  /// The setting: which recogniser recordings use.
  struct Provider {
    /// What it shall be from now on; without one it is only told.
    std::optional<RecognitionProvider> choice = {};
  };
  /// All transcripts that nothing of this leaves out.
  struct Transcripts {
    /// The identifier or the name of theirs.
    std::optional<std::string> customer = {};
    bool withoutCustomer = false;
    /// What their text has in it.
    std::string text = {};
  };
  /// Follows the list until it is told to stop.
  struct Watch {
    /// Between the end of one look and the next.
    std::chrono::duration<double> pause;
  };
  struct Customers {};
  struct Show {
    UUID id;
  };
  /// Has a new analysis made and prints it; what is stored stays.
  struct Analyse {
    UUID id;
  };
  struct Assign {
    UUID id;
    /// The identifier or the name.
    std::string customer;
  };
  struct Export {
    enum class Format { markdown, text, json };
    UUID id;
    Format format = Format::markdown;
  };

  /// Starts or stops a recording of the desktop program.
  struct Toggle {};
  struct Autostart {
    /// Nothing to print what is set.
    std::optional<bool> isWanted;
  };

  /// Whether the desktop program looks for updates by itself.
  struct Updates {
    /// Nothing to print what is set.
    std::optional<bool> isWanted;
  };

  struct LogIn {};
  struct LogOut {};
  struct WhoAmI {};
  /// Hands the redirect that ends a login to whichever program waits for it.
  struct Callback {
    /// "-" to read it from standard input.
    std::string url;
  };

  std::variant<Record, Transcribe, Provider, Transcripts, Watch, Customers, Show, Analyse, Assign,
               Export, LogIn, LogOut, WhoAmI, Callback, Toggle, Autostart, Updates>
      command;
  /// Output for programs instead of people.
  bool asJSON = false;
};

/// Reads the arguments. When there is nothing to run (help, version, a mistake) it has printed what
/// there is to say and gives the exit status instead.
std::variant<CommandLine, int> parseCommandLine(int argumentCount, char const* const* arguments);

}  // namespace vek
