// SPDX-License-Identifier: MIT
#include "records/TranscriptDocument.hpp"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <string_view>

#include "records/MarkdownText.hpp"

namespace vek {

namespace {

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

}  // namespace

std::string TranscriptDocument::markdown() const {
  auto whole = fmt::format("# Conversation of {}\n", localTime(startDate));
  if (!customer.empty()) whole += "\nCustomer: " + markdownText(customer) + "\n";
  whole += "\n## Transcript\n\n" + paragraphs(text) + "\n";
  return analysis.empty() ? whole : whole + "\n## Analysis\n\n" + analysis;
}

std::string TranscriptDocument::plainText() const {
  auto whole = localTime(startDate);
  if (!customer.empty()) whole += "  " + customer;
  whole += "\n\n" + text;
  return analysis.empty() ? whole : whole + "\n\n" + analysis;
}

std::string localTime(Date date) {
  return fmt::format("{:%Y-%m-%d %H:%M}",
                     fmt::localtime(std::chrono::system_clock::to_time_t(date)));
}

}  // namespace vek
