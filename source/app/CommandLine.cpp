// SPDX-License-Identifier: MIT
#include "app/CommandLine.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace vek {

namespace {

constexpr int usageError = 2;

CLI::Validator const isIdentifier(
    [](std::string const& text) {
      return UUID::parse(text) ? "" : "'" + text + "' is not a transcript's identifier";
    },
    "ID");

std::vector<std::string> providerNames() {
  std::vector<std::string> names;
  names.reserve(allRecognitionProviders.size());
  for (auto const provider : allRecognitionProviders) names.emplace_back(rawValue(provider));
  return names;
}

/// The grammar, and where the values of a parse end up.
struct Grammar {
  CLI::App app{"Records conversations, turns speech into text and reads it back.", "vekctl"};
  CommandLine::Record record;
  CommandLine::Transcribe transcribe;
  std::string provider;
  std::string id;
  double seconds = 0;
  bool asJSON = false;

  CLI::App* recordCommand = add("record", "Record until Ctrl-C, and store the text as it is said");
  CLI::App* transcribeCommand = add("transcribe", "Print the text of WAV files; nothing is stored");
  CLI::App* providerCommand = add("provider", "Print or set the recogniser that recordings use");
  CLI::App* transcriptsCommand = add("transcripts", "List the stored transcripts, newest first");
  CLI::App* showCommand = add("show", "Print a stored transcript and its analysis");

  Grammar() {
    app.require_subcommand(1);
    recordCommand->add_option("--from", record.file, "Play this WAV file instead of the microphone")
        ->type_name("FILE.wav");
    recordCommand->add_option("--provider", provider, "The recogniser, for this run only")
        ->check(CLI::IsMember(providerNames()))
        ->type_name("apple|deepgram");
    recordCommand->add_option("--for", seconds, "Stop after so many seconds")
        ->check(CLI::PositiveNumber)
        ->type_name("SECONDS");
    transcribeCommand->add_option("files", transcribe.files, "The files, a line of text each")
        ->required()
        ->type_name("FILE.wav");
    providerCommand->add_option("provider", provider, "Of recordings that start from now on")
        ->check(CLI::IsMember(providerNames()))
        ->type_name("apple|deepgram");
    showCommand->add_option("id", id, "As `vekctl record` and `vekctl transcripts` print it")
        ->required()
        ->check(isIdentifier);
  }

  [[nodiscard]] CommandLine commandLine() {
    if (recordCommand->parsed()) {
      record.provider = recognitionProvider(provider);
      if (seconds > 0) record.duration = std::chrono::duration<double>(seconds);
      return {record, asJSON};
    }
    if (transcribeCommand->parsed()) return {transcribe, asJSON};
    if (providerCommand->parsed()) {
      return {CommandLine::Provider{recognitionProvider(provider)}, asJSON};
    }
    if (transcriptsCommand->parsed()) return {CommandLine::Transcripts{}, asJSON};
    return {CommandLine::Show{*UUID::parse(id)}, asJSON};
  }

 private:
  CLI::App* add(std::string const& name, std::string const& description) {
    auto* const command = app.add_subcommand(name, description);
    command->add_flag("--json", asJSON, "Output for programs");
    return command;
  }
};

}  // namespace

std::variant<CommandLine, int> parseCommandLine(int argumentCount, char const* const* arguments) {
  Grammar grammar;
  try {
    grammar.app.parse(argumentCount, arguments);
  } catch (CLI::ParseError const& error) {
    return grammar.app.exit(error) == 0 ? 0 : usageError;
  }
  return grammar.commandLine();
}

}  // namespace vek
