// SPDX-License-Identifier: MIT
#include "app/TranscriptText.hpp"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <boost/json/serialize.hpp>

#include <algorithm>
#include <chrono>
#include <exception>
#include <string_view>

#include "records/MarkdownText.hpp"

namespace vek {

namespace {

std::string localTime(Date date) {
  return fmt::format("{:%Y-%m-%d %H:%M}",
                     fmt::localtime(std::chrono::system_clock::to_time_t(date)));
}

std::string utcTime(Date date) {
  return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}",
                     fmt::gmtime(std::chrono::system_clock::to_time_t(date)));
}

/// Each line as a paragraph of its own.
std::string paragraphs(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    auto const end = std::min(text.find_first_of("\r\n"), text.size());
    auto const line = markdownText(text.substr(0, end));
    if (!line.empty()) result += (result.empty() ? "" : "\n\n") + line;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return result;
}

std::string markdown(Transcript const& transcript, Customers const& customers) {
  auto text = fmt::format("# Conversation of {}\n", localTime(transcript.startDate));
  auto const customer = customerName(transcript, customers);
  if (!customer.empty()) text += "\nCustomer: " + markdownText(customer) + "\n";
  text += "\n## Transcript\n\n" + paragraphs(fetchedText(transcript.textState)) + "\n";
  // It is Markdown already.
  auto const& analysis = fetchedText(transcript.analysisState);
  return analysis.empty() ? text : text + "\n## Analysis\n\n" + analysis;
}

std::string plainText(Transcript const& transcript, Customers const& customers) {
  auto const customer = customerName(transcript, customers);
  auto text = localTime(transcript.startDate);
  if (!customer.empty()) text += "  " + customer;
  text += "\n\n" + fetchedText(transcript.textState);
  auto const& analysis = fetchedText(transcript.analysisState);
  return analysis.empty() ? text : text + "\n\n" + analysis;
}

}  // namespace

std::string customerName(Transcript const& transcript, Customers const& customers) {
  auto const* customer = transcript.customerID ? customers.find(*transcript.customerID) : nullptr;
  return customer ? customer->name : std::string();
}

std::string row(Transcript const& transcript, Customers const& customers) {
  auto const customer = customerName(transcript, customers);
  return fmt::format("{}  {}  {}", transcript.id.lowerCaseText(), localTime(transcript.startDate),
                     customer.empty() ? "-" : customer);
}

boost::json::object object(Transcript const& transcript, Customers const& customers) {
  boost::json::object result{{"transcript_id", transcript.id.lowerCaseText()},
                             {"created_on", utcTime(transcript.startDate)}};
  if (transcript.customerID) {
    result["customer_id"] = transcript.customerID->lowerCaseText();
    result["customer_name"] = customerName(transcript, customers);
  }
  return result;
}

std::string const& fetchedText(TranscriptContentState const& state) {
  if (auto const* failure = state.as<TranscriptContentState::error>()) {
    std::rethrow_exception(failure->object.error());
  }
  auto const* content = state.as<TranscriptContentState::content>();
  return content ? content->text.string() : SharedText().string();
}

std::string exported(Transcript const& transcript, Customers const& customers,
                     CommandLine::Export::Format format) {
  using Format = CommandLine::Export::Format;
  if (format == Format::markdown) return markdown(transcript, customers);
  if (format == Format::text) return plainText(transcript, customers);
  auto whole = object(transcript, customers);
  whole["transcript"] = fetchedText(transcript.textState);
  whole["analysis"] = fetchedText(transcript.analysisState);
  return boost::json::serialize(whole);
}

}  // namespace vek
