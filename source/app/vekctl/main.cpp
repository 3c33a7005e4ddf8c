// SPDX-License-Identifier: MIT
#include <cstdlib>

#include "app/Commands.hpp"
#include "platform/CoreDumps.hpp"
#include "platform/Deployment.hpp"
#include "platform/Log.hpp"
#include "platform/OnDeviceSpeechRecognizer.hpp"
#include "runtime/Match.hpp"
#include "runtime/Report.hpp"

namespace {

int run(vek::CommandLine const& line, vek::Terminal& terminal, vek::Signals& signals) {
  using Line = vek::CommandLine;
  return std::visit(
      vek::detail::Overloaded{
          [&](Line::Record const& record) {
            return vek::record(record, line.asJSON, terminal, signals);
          },
          [&](Line::Transcribe const& transcribe) {
            return vek::transcribe(transcribe, line.asJSON, terminal, signals);
          },
          [&](Line::Provider const& provider) {
            return vek::provider(provider, line.asJSON, terminal);
          },
          [&](Line::Transcripts const& transcripts) {
            return vek::listTranscripts(transcripts, line.asJSON, terminal, signals);
          },
          [&](Line::Watch const& watch) {
            return vek::watch(watch, line.asJSON, terminal, signals);
          },
          [&](Line::Customers) { return vek::listCustomers(line.asJSON, terminal, signals); },
          [&](Line::Show const& show) { return vek::show(show, line.asJSON, terminal, signals); },
          [&](Line::Analyse const& analyse) {
            return vek::analyse(analyse, line.asJSON, terminal, signals);
          },
          [&](Line::Assign const& assign) {
            return vek::assign(assign, line.asJSON, terminal, signals);
          },
          [&](Line::Export const& exported) {
            return vek::exportTranscript(exported, line.asJSON, terminal, signals);
          },
          [](Line::Toggle) { return vek::toggle(); },
          [&](Line::Autostart const& autostart) {
            return vek::autostart(autostart, line.asJSON, terminal);
          },
          [&](Line::Updates const& updates) {
            return vek::updates(updates, line.asJSON, terminal);
          },
          [&](Line::LogIn) { return vek::logIn(line.asJSON, terminal, signals); },
          [&](Line::LogOut) { return vek::logOut(line.asJSON, terminal, signals); },
          [&](Line::WhoAmI) { return vek::whoAmI(line.asJSON, terminal, signals); },
          [&](Line::Callback const& callback) {
            return vek::callback(callback, terminal, signals);
          }},
      line.command);
}

struct SpeechRecognizerStop {
  SpeechRecognizerStop() = default;
  SpeechRecognizerStop(SpeechRecognizerStop const&) = delete;
  SpeechRecognizerStop& operator=(SpeechRecognizerStop const&) = delete;
  ~SpeechRecognizerStop() { vek::stopSharedSpeechRecognizer(); }
};

}  // namespace

int main(int argumentCount, char** arguments) {
  vek::disableCoreDumps();
  auto const line = vek::parseCommandLine(argumentCount, arguments);
  if (auto const* status = std::get_if<int>(&line)) return *status;
  vek::Signals signals;
  vek::setReportHandler(
      [logger = vek::Logger("runtime")](std::string_view warning) { logger.error(warning); });
  // The terminal is for the person who typed the command; the log speaks up when asked to. Never
  // undone: threads may log until the process has ended.
  auto const lowest =
      std::getenv("VEK_LOG") ? vek::logLevelFromEnvironment() : vek::LogLevel::error;
  [[maybe_unused]] static auto const* const quiet =
      new vek::LogRedirection(vek::systemLogSink(), lowest);
  vek::Terminal terminal;
  SpeechRecognizerStop const atEnd;
  try {
    // Found now, so that a bad one is told before anything begins.
    static_cast<void>(vek::deployment());
    int const status = run(std::get<vek::CommandLine>(line), terminal, signals);
    if (!terminal.hasLostOutput()) return status;
    terminal.printError("Not all of the output could be written.");
    return 1;
  } catch (std::exception const& error) {
    terminal.printError(error.what());
    return 1;
  }
}
