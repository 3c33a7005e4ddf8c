// SPDX-License-Identifier: MIT
#include <fmt/format.h>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/json/array.hpp>
#include <boost/json/serialize.hpp>

#include <optional>
#include <stdexcept>
#include <vector>

#include "app/Commands.hpp"
#include "app/ReportedErrors.hpp"
#include "app/TranscriptText.hpp"
#include "app/TranscriptsSession.hpp"

namespace vek {

namespace {

using ListState = TranscriptsListFeature::State;

bool hasText(Transcript const& transcript, std::string const& text) {
  auto const* content = transcript.textState.as<TranscriptContentState::content>();
  return text.empty() || (content && boost::algorithm::icontains(content->text.string(), text));
}

std::vector<Transcript> chosen(CommandLine::Transcripts const& options,
                               TranscriptsSession const& session) {
  std::optional<UUID> customer;
  if (options.customer) customer = session.customer(*options.customer).id;
  std::vector<Transcript> result;
  for (auto const& transcript : session.state().transcripts) {
    if (customer && transcript.customerID != customer) continue;
    if (options.withoutCustomer && transcript.customerID) continue;
    if (hasText(transcript, options.text)) result.push_back(transcript);
  }
  return result;
}

void print(std::vector<Transcript> const& transcripts, ListState const& state, bool asJSON,
           Terminal& terminal) {
  boost::json::array rows;
  for (auto const& transcript : transcripts) {
    if (asJSON) {
      rows.push_back(object(transcript, state.customers));
    } else {
      terminal.printLine(row(transcript, state.customers));
    }
  }
  if (asJSON) return terminal.printLine(boost::json::serialize(rows));
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
    boost::json::array rows;
    for (auto const& [id, name] : session.state().customers) {
      if (asJSON) {
        rows.push_back({{"customer_id", id.lowerCaseText()}, {"customer_name", name}});
      } else {
        terminal.printLine(id.lowerCaseText() + "  " + name);
      }
    }
    if (asJSON) terminal.printLine(boost::json::serialize(rows));
  });
}

}  // namespace vek
