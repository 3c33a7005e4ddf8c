// SPDX-License-Identifier: MIT
#include <boost/json/serialize.hpp>

#include <stdexcept>

#include "app/Commands.hpp"
#include "app/ReportedErrors.hpp"
#include "app/TranscriptText.hpp"
#include "app/TranscriptsSession.hpp"

namespace vek {

namespace {

using Action = TranscriptFeature::Action;

/// Fetches the text and the analysis of a transcript. Throws what that fails with.
Transcript fetched(Transcript const& transcript, TranscriptsSession& session) {
  session.open(transcript);
  auto result = session.send(transcript.id, Action::refetchContentButtonClicked{}).transcript;
  fetchedText(result.textState);
  return result;
}

/// The same of one of which nothing else is known.
Transcript fetched(UUID id, TranscriptsSession& session) {
  return fetched({.id = id, .startDate = {}}, session);
}

}  // namespace

int show(CommandLine::Show const& options, bool asJSON, Terminal& terminal, Signals& signals) {
  return reportingErrors(terminal, [&] {
    TranscriptsSession session(signals);
    auto const transcript = fetched(options.id, session);
    auto const& text = fetchedText(transcript.textState);
    auto const& analysis = fetchedText(transcript.analysisState);
    if (asJSON) {
      terminal.printLine(
          boost::json::serialize(boost::json::object{{"transcript_id", options.id.lowerCaseText()},
                                                     {"transcript", text},
                                                     {"analysis", analysis}}));
      return;
    }
    terminal.printLine(text);
    if (!analysis.empty()) terminal.printLine("\n" + analysis);
  });
}

int analyse(CommandLine::Analyse const& options, bool asJSON, Terminal& terminal,
            Signals& signals) {
  return reportingErrors(terminal, [&] {
    TranscriptsSession session(signals);
    auto transcript = fetched(options.id, session);
    if (fetchedText(transcript.textState).empty()) {
      throw std::runtime_error("There is no text to analyse.");
    }
    session.close(options.id);
    // One that appears without an analysis asks for it.
    transcript.analysisState = TranscriptContentState::initial{};
    session.open(transcript);
    auto const& opened = session.send(options.id, Action::transcriptDidAppear{});
    auto const& analysis = fetchedText(opened.transcript.analysisState);
    terminal.printLine(
        asJSON ? boost::json::serialize(boost::json::object{
                     {"transcript_id", options.id.lowerCaseText()}, {"analysis", analysis}})
               : analysis);
  });
}

int assign(CommandLine::Assign const& options, bool asJSON, Terminal& terminal, Signals& signals) {
  return reportingErrors(terminal, [&] {
    TranscriptsSession session(signals);
    session.loadLists();
    auto const transcript = session.transcript(options.id);
    auto const customer = session.customer(options.customer);
    if (transcript.customerID) {
      throw std::runtime_error("The transcript has a customer already.");
    }
    session.open(transcript);
    session.send(options.id, Action::customerPickerClicked{customer});
    auto const& opened = session.send(options.id, Action::assignCustomerButtonClicked{});
    if (opened.error) std::rethrow_exception(opened.error->error());
    auto const& customers = session.state().customers;
    terminal.printLine(asJSON ? boost::json::serialize(object(opened.transcript, customers))
                              : row(opened.transcript, customers));
  });
}

int exportTranscript(CommandLine::Export const& options, bool asJSON, Terminal& terminal,
                     Signals& signals) {
  return reportingErrors(terminal, [&] {
    TranscriptsSession session(signals);
    session.loadLists();
    auto const transcript = fetched(session.transcript(options.id), session);
    auto const format = asJSON ? CommandLine::Export::Format::json : options.format;
    terminal.printText(exported(transcript, session.state().customers, format));
  });
}

}  // namespace vek
