// SPDX-License-Identifier: MIT
#include "app/TranscriptText.hpp"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <boost/json/serialize.hpp>

#include <chrono>
#include <exception>
#include <string_view>

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

std::string markdown(Transcript const& transcript, Customers const& customers) {
  auto text = fmt::format("# Conversation of {}\n", localTime(transcript.startDate));
  auto const customer = customerName(transcript, customers);
  if (!customer.empty()) text += "\nCustomer: " + asMarkdown(customer) + "\n";
  text += "\n## Transcript\n\n" + asMarkdown(fetchedText(transcript.textState)) + "\n";
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

std::string asMarkdown(std::string_view text) {
  constexpr std::string_view anywhere = "\\`*_[]<>#~|&";
  constexpr std::string_view atStart = "+-=";
  constexpr std::string_view digits = "0123456789";
  std::string result;
  std::size_t lineStart = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto const before = text.substr(lineStart, i - lineStart);
    bool const isList = (text[i] == '.' || text[i] == ')') && !before.empty() &&
                        before.find_first_not_of(digits) == std::string_view::npos;
    bool const isSpecial = anywhere.find(text[i]) != std::string_view::npos || isList ||
                           (before.empty() && atStart.find(text[i]) != std::string_view::npos);
    if (isSpecial) result += '\\';
    result += text[i];
    if (text[i] != '\n') continue;
    result += '\n';
    lineStart = i + 1;
  }
  return result;
}

}  // namespace vek
