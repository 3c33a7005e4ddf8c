// SPDX-License-Identifier: MIT
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <map>
#include <optional>

#include "Clients/APIClient.hpp"
#include "app/Commands.hpp"
#include "runtime/Dependency.hpp"
#include "runtime/MainQueue.hpp"
#include "runtime/WhenAll.hpp"

namespace vek {

namespace {

/// Runs `task` on the main queue to its end.
template <class T>
T await(Task<T> task) {
  std::optional<Result<T>> outcome;
  auto run = [](Task<T> work, std::optional<Result<T>>& place) -> Task<> {
    place.emplace(co_await attempt(std::move(work)));
  };
  spawn(MainQueue::shared(), run(std::move(task), outcome));
  MainQueue::shared().runUntil([&] { return outcome.has_value(); });
  return std::move(*outcome).value();
}

struct Lists {
  std::vector<TranscriptMetadataDTO> transcripts;
  std::map<UUID, std::string> customers;
};

Task<Lists> fetchLists() {
  Dependency<APIClientKey> const client;
  auto [transcripts, customers] =
      co_await whenAll(client->getAllTranscriptsMetadata(), client->getCustomers());
  std::sort(transcripts.begin(), transcripts.end(),
            [](auto const& a, auto const& b) { return a.createdOn > b.createdOn; });
  Lists lists{std::move(transcripts), {}};
  for (auto const& customer : customers)
    lists.customers.emplace(customer.id, customer.customerName);
  co_return lists;
}

std::string localTime(Date date) {
  return fmt::format("{:%Y-%m-%d %H:%M}",
                     fmt::localtime(std::chrono::system_clock::to_time_t(date)));
}

std::string utcTime(Date date) {
  return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}",
                     fmt::gmtime(std::chrono::system_clock::to_time_t(date)));
}

void printJSON(Lists const& lists, Terminal& terminal) {
  boost::json::array rows;
  for (auto const& transcript : lists.transcripts) {
    boost::json::object row{{"transcript_id", transcript.id.lowerCaseText()},
                            {"created_on", utcTime(transcript.createdOn)}};
    if (transcript.customerID) row["customer_id"] = transcript.customerID->lowerCaseText();
    rows.push_back(std::move(row));
  }
  terminal.printLine(boost::json::serialize(rows));
}

template <class Command>
int reportingErrors(Terminal& terminal, Command command) {
  try {
    command();
    return 0;
  } catch (std::exception const& error) {
    terminal.printError(error.what());
    return 1;
  }
}

}  // namespace

int listTranscripts(bool asJSON, Terminal& terminal) {
  return reportingErrors(terminal, [&] {
    auto const lists = await(fetchLists());
    if (asJSON) return printJSON(lists, terminal);
    for (auto const& transcript : lists.transcripts) {
      auto const customer = transcript.customerID ? lists.customers.find(*transcript.customerID)
                                                  : lists.customers.end();
      terminal.printLine(fmt::format("{}  {}  {}", transcript.id.lowerCaseText(),
                                     localTime(transcript.createdOn),
                                     customer == lists.customers.end() ? "-" : customer->second));
    }
    if (lists.transcripts.empty()) terminal.printMessage("There are no transcripts yet.");
  });
}

int show(CommandLine::Show const& options, bool asJSON, Terminal& terminal) {
  return reportingErrors(terminal, [&] {
    Dependency<APIClientKey> const client;
    auto const content = await(client->getTranscriptContent(options.id));
    auto const text = content.transcript.value_or("");
    auto const analysis = content.analysis.value_or("");
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

}  // namespace vek
