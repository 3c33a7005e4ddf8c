// SPDX-License-Identifier: MIT
#include "app/CommandLine.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <map>

namespace vek {

namespace {

constexpr int usageError = 2;

CLI::Validator const isIdentifier(
    [](std::string const& text) {
      return UUID::parse(text) ? "" : "'" + text + "' is not a transcript's identifier";
    },
    "ID");

std::map<std::string, CommandLine::Export::Format> const exportFormats = {
    {"md", CommandLine::Export::Format::markdown},
    {"txt", CommandLine::Export::Format::text},
    {"json", CommandLine::Export::Format::json}};

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
  CommandLine::Transcripts transcripts;
  CommandLine::Assign assign;
  CommandLine::Export exported;
  CommandLine::Callback callback;
  std::string provider;
  std::string choice;
  std::string id;
  double seconds = 0;
  double pause = 30;
  bool asJSON = false;

  CLI::App* recordCommand = add("record", "Record until Ctrl-C, and store the text as it is said");
  CLI::App* transcribeCommand = add("transcribe", "Print the text of WAV files; nothing is stored");
  CLI::App* providerCommand = add("provider", "Print or set the recogniser that recordings use");
  CLI::App* transcriptsCommand = add("transcripts", "List the stored transcripts, newest first");
  CLI::App* watchCommand = add("watch", "Print the list as it changes, until Ctrl-C");
  CLI::App* customersCommand = add("customers", "List the customers");
  CLI::App* showCommand = add("show", "Print a stored transcript and its analysis");
  CLI::App* analyseCommand = add("analyse", "Have a new analysis made of a transcript's text");
  CLI::App* assignCommand = add("assign", "Assign a transcript to a customer, once and for all");
  CLI::App* exportCommand = add("export", "Print a whole transcript for other programs to read");
  CLI::App* toggleCommand =
      app.add_subcommand("toggle", "Start or stop a recording of the desktop program");
  CLI::App* autostartCommand =
      add("autostart", "Print or set whether the desktop starts VEK when you log in");
  CLI::App* updatesCommand =
      add("updates", "Print or set whether the desktop program looks for updates by itself");
  CLI::App* logInCommand = add("login", "Sign in on the web, in your browser");
  CLI::App* logOutCommand = add("logout", "Forget who is signed in");
  CLI::App* whoAmICommand = add("whoami", "Print who is signed in");
  CLI::App* callbackCommand =
      app.add_subcommand("callback", "Hand over the address that a login ended at");

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
    addTranscriptsOptions();
    for (auto* const command : {showCommand, analyseCommand, assignCommand, exportCommand}) {
      command->add_option("id", id, "As `vekctl record` and `vekctl transcripts` print it")
          ->required()
          ->check(isIdentifier);
    }
    assignCommand->add_option("customer", assign.customer, "The name or the identifier")
        ->required();
    addChoice(*autostartCommand, "Off unless told");
    addChoice(*updatesCommand, "On unless told");
    callbackCommand->add_option("url", callback.url, "The address; - to read it from the input")
        ->required();
    exportCommand->add_option("--format", exported.format, "Markdown unless told")
        ->transform(CLI::CheckedTransformer(exportFormats))
        ->type_name("md|txt|json");
  }

  void addChoice(CLI::App& command, std::string const& description) {
    command.add_option("choice", choice, description)
        ->check(CLI::IsMember({"on", "off"}))
        ->type_name("on|off");
  }

  void addTranscriptsOptions() {
    auto* const customer =
        transcriptsCommand
            ->add_option("--customer", transcripts.customer, "Those of a customer only")
            ->type_name("NAME");
    transcriptsCommand
        ->add_flag("--without-customer", transcripts.withoutCustomer, "Those of no customer only")
        ->excludes(customer);
    transcriptsCommand
        ->add_option("--text", transcripts.text, "Those only that have this in their text")
        ->type_name("WORDS");
    watchCommand->add_option("--every", pause, "Look again after so many seconds; 30 unless told")
        ->check(CLI::Range(0.1, 86'400.0))
        ->type_name("SECONDS");
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
    if (transcriptsCommand->parsed()) return {transcripts, asJSON};
    if (watchCommand->parsed()) {
      return {CommandLine::Watch{std::chrono::duration<double>(pause)}, asJSON};
    }
    if (customersCommand->parsed()) return {CommandLine::Customers{}, asJSON};
    if (toggleCommand->parsed()) return {CommandLine::Toggle{}, asJSON};
    auto const isWanted = choice.empty() ? std::nullopt : std::optional(choice == "on");
    if (autostartCommand->parsed()) return {CommandLine::Autostart{isWanted}, asJSON};
    if (updatesCommand->parsed()) return {CommandLine::Updates{isWanted}, asJSON};
    if (logInCommand->parsed()) return {CommandLine::LogIn{}, asJSON};
    if (logOutCommand->parsed()) return {CommandLine::LogOut{}, asJSON};
    if (whoAmICommand->parsed()) return {CommandLine::WhoAmI{}, asJSON};
    if (callbackCommand->parsed()) return {callback, asJSON};
    return {ofOneTranscript(*UUID::parse(id)), asJSON};
  }

  [[nodiscard]] decltype(CommandLine::command) ofOneTranscript(UUID transcript) {
    if (analyseCommand->parsed()) return CommandLine::Analyse{transcript};
    if (assignCommand->parsed()) return CommandLine::Assign{transcript, assign.customer};
    if (exportCommand->parsed()) return CommandLine::Export{transcript, exported.format};
    return CommandLine::Show{transcript};
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
