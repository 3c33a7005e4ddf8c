// SPDX-License-Identifier: MIT
#include <fmt/format.h>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "app/Commands.hpp"
#include "app/TranscriptText.hpp"
#include "app/TranscriptsSession.hpp"

namespace vek {

namespace {

using ListState = TranscriptsListFeature::State;
using Content = TranscriptContentState;

std::size_t wordCount(std::string const& text) {
  std::size_t count = 0;
  bool isInWord = false;
  for (char const character : text) {
    bool const isSpace = character == ' ' || character == '\n' || character == '\t';
    if (isInWord && isSpace) ++count;
    isInWord = !isSpace;
  }
  return count + (isInWord ? 1 : 0);
}

/// Prints a line for each transcript that settles as something else than was printed last, and to
/// programs one for the list itself.
class ListPrinter {
 public:
  ListPrinter(TranscriptsSession& session, Terminal& terminal, bool asJSON)
      : terminal_(terminal), asJSON_(asJSON) {
    observation_ = session.onChange([this](ListState const& state) { didChange(state); });
  }

 private:
  void didChange(ListState const& state) {
    if (!(state.transcripts.ids() == last_.transcripts.ids())) dropRemoved(state);
    last_.transcripts.forEachDifference(state.transcripts, [&](std::size_t position) {
      if (position < state.transcripts.size()) update(state.transcripts[position], state.customers);
    });
    if (state.error && state.error != last_.error) {
      terminal_.printError(state.error->localizedDescription());
    }
    terminal_.showChanging(fmt::format("{} transcripts", state.transcripts.size()),
                           state.isLoading ? "loading" : "");
    if (asJSON_) printState(state);
    last_ = state;
  }

  void printState(ListState const& state) {
    boost::json::object result{{"loading", state.isLoading}, {"count", state.transcripts.size()}};
    if (state.error) result["error"] = state.error->localizedDescription();
    auto line = boost::json::serialize(result);
    if (line == shownState_) return;
    terminal_.printLine(line);
    shownState_ = std::move(line);
  }

  void update(Transcript const& transcript, Customers const& customers) {
    auto const* content = transcript.textState.as<Content::content>();
    auto const* failure = transcript.textState.as<Content::error>();
    if (!content && !failure) return;
    auto const line = content ? settledLine(transcript, customers)
                              : failedLine(transcript, failure->object, customers);
    auto& shown = shown_[transcript.id];
    if (line == shown) return;
    shown = line;
    terminal_.printLine(line);
  }

  [[nodiscard]] std::string settledLine(Transcript const& transcript,
                                        Customers const& customers) const {
    auto const words = wordCount(fetchedText(transcript.textState));
    auto const* analysis = transcript.analysisState.as<Content::content>();
    bool const isAnalysed = analysis && !analysis->text.empty();
    if (!asJSON_) {
      return fmt::format("{}  {} words{}", row(transcript, customers), words,
                         isAnalysed ? ", analysed" : "");
    }
    auto result = object(transcript, customers);
    result["words"] = words;
    result["analysed"] = isAnalysed;
    return boost::json::serialize(result);
  }

  [[nodiscard]] std::string failedLine(Transcript const& transcript, ErrorObject const& error,
                                       Customers const& customers) const {
    if (!asJSON_) return row(transcript, customers) + "  " + error.localizedDescription();
    auto result = object(transcript, customers);
    result["error"] = error.localizedDescription();
    return boost::json::serialize(result);
  }

  void dropRemoved(ListState const& state) {
    std::erase_if(shown_, [&](auto const& shown) {
      auto const id = shown.first.lowerCaseText();
      if (state.transcripts.contains(shown.first)) return false;
      terminal_.printLine(asJSON_ ? boost::json::serialize(boost::json::object{
                                        {"transcript_id", id}, {"removed", true}})
                                  : id + "  removed");
      return true;
    });
  }

  Terminal& terminal_;
  bool asJSON_;
  ListState last_;
  std::map<UUID, std::string> shown_;
  std::string shownState_;
  Subscription observation_;
};

}  // namespace

int watch(CommandLine::Watch const& options, bool asJSON, Terminal& terminal, Signals& signals) {
  TranscriptsSession session(signals);
  ListPrinter const printer(session, terminal, asJSON);
  try {
    while (terminal.hasReader()) {
      session.refetch();
      session.wait(options.pause, [&] { return !terminal.hasReader(); });
    }
    return 0;
  } catch (Interrupted const&) {
    terminal.clearChanging();
    return 0;
  }
}

}  // namespace vek
