// SPDX-License-Identifier: MIT
#include "app/TranscriptText.hpp"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <boost/json/serialize.hpp>

#include <chrono>
#include <exception>

#include "records/TranscriptDocument.hpp"

namespace vek {

namespace {

std::string utcTime(Date date) {
  return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}",
                     fmt::gmtime(std::chrono::system_clock::to_time_t(date)));
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
  if (format != Format::json) {
    TranscriptDocument const document{.startDate = transcript.startDate,
                                      .customer = customerName(transcript, customers),
                                      .text = fetchedText(transcript.textState),
                                      .analysis = fetchedText(transcript.analysisState)};
    return format == Format::markdown ? document.markdown() : document.plainText();
  }
  auto whole = object(transcript, customers);
  whole["transcript"] = fetchedText(transcript.textState);
  whole["analysis"] = fetchedText(transcript.analysisState);
  return boost::json::serialize(whole);
}

}  // namespace vek
