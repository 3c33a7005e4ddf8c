// SPDX-License-Identifier: MIT
#include <fmt/format.h>
#include <boost/json/array.hpp>
#include <boost/json/serialize.hpp>

#include <optional>
#include <stdexcept>
#include <vector>

#include "app/Commands.hpp"
#include "app/ReportedErrors.hpp"
#include "app/TranscriptText.hpp"
#include "app/TranscriptsSession.hpp"
#include "records/CaseFolding.hpp"

namespace vek {

namespace {

using ListState = TranscriptsListFeature::State;

bool hasText(Transcript const& transcript, std::string const& foldedText) {
  auto const* content = transcript.textState.as<TranscriptContentState::content>();
  return foldedText.empty() ||
         (content && caseFolded(content->text.string()).find(foldedText) != std::string::npos);
}

std::vector<Transcript> chosen(CommandLine::Transcripts const& options,
                               TranscriptsSession const& session) {
  std::optional<UUID> customer;
  if (options.customer) customer = session.customer(*options.customer).id;
  auto const text = caseFolded(options.text);
  std::vector<Transcript> result;
  for (auto const& transcript : session.state().transcripts) {
    if (customer && transcript.customerID != customer) continue;
    if (options.withoutCustomer && transcript.customerID) continue;
    if (hasText(transcript, text)) result.push_back(transcript);
  }
  return result;
}

/// A line for each row, or for programs all of them in one.
template <class Rows, class Line, class Object>
void printRows(Rows const& rows, bool asJSON, Terminal& terminal, Line line, Object object) {
  boost::json::array objects;
  for (auto const& row : rows) {
    asJSON ? objects.push_back(object(row)) : terminal.printLine(line(row));
  }
  if (asJSON) terminal.printLine(boost::json::serialize(objects));
}

void print(std::vector<Transcript> const& transcripts, ListState const& state, bool asJSON,
           Terminal& terminal) {
  printRows(
      transcripts, asJSON, terminal,
      [&](Transcript const& transcript) { return row(transcript, state.customers); },
      [&](Transcript const& transcript) { return object(transcript, state.customers); });
  if (asJSON) return;
  if (state.transcripts.empty()) {
    terminal.printMessage("There are no transcripts yet.");
  } else if (transcripts.empty()) {
    terminal.printMessage("There is no such transcript.");
  }
}

/// What was not fetched cannot be looked into.
void throwMissingTexts(ListState const& state) {
  std::size_t count = 0;
  std::string reason;
  for (auto const& transcript : state.transcripts) {
    auto const* failure = transcript.textState.as<TranscriptContentState::error>();
    if (failure && ++count == 1) reason = failure->object.localizedDescription();
  }
  if (count == 0) return;
  throw std::runtime_error(fmt::format("Texts of {} transcripts are missing: {}", count, reason));
}

}  // namespace

int listTranscripts(CommandLine::Transcripts const& options, bool asJSON, Terminal& terminal,
                    Signals& signals) {
  return reportingErrors(terminal, [&] {
    TranscriptsSession session(signals);
    options.text.empty() ? session.loadLists() : session.loadTexts();
    print(chosen(options, session), session.state(), asJSON, terminal);
    if (!options.text.empty()) throwMissingTexts(session.state());
  });
}

int listCustomers(bool asJSON, Terminal& terminal, Signals& signals) {
  return reportingErrors(terminal, [&] {
    TranscriptsSession session(signals);
    session.loadLists();
    printRows(
        session.state().customers, asJSON, terminal,
        [](Customer const& customer) { return customer.id.lowerCaseText() + "  " + customer.name; },
        [](Customer const& customer) {
          return boost::json::object{{"customer_id", customer.id.lowerCaseText()},
                                     {"customer_name", customer.name}};
        });
  });
}

}  // namespace vek
