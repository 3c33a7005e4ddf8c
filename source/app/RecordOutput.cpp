// SPDX-License-Identifier: MIT
#include "app/RecordOutput.hpp"

#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

namespace vek {

void RecordOutput::printObject(std::string_view key, std::string_view value) {
  terminal_.printLine(boost::json::serialize(boost::json::object{{key, value}}));
}

void RecordOutput::message(std::string_view text) {
  if (!asJSON_) terminal_.printMessage(text);
}

void RecordOutput::error(std::string_view text) {
  if (asJSON_) printObject("error", text);
  terminal_.printError(text);
}

void RecordOutput::partial(std::string_view elapsed, std::string_view text) {
  if (!asJSON_) return terminal_.showChanging(elapsed, text);
  if (!text.empty() && text != printedPartial_) printObject("partial", text);
  printedPartial_ = text;
}

void RecordOutput::piece(std::string_view text) {
  if (asJSON_) {
    printObject("piece", text);
  } else {
    terminal_.printLine(text);
  }
}

void RecordOutput::finished(UUID const& transcript, bool isStored) {
  terminal_.clearChanging();
  auto const id = transcript.lowerCaseText();
  if (asJSON_) {
    terminal_.printLine(
        boost::json::serialize(boost::json::object{{"transcript_id", id}, {"stored", isStored}}));
  } else {
    terminal_.printLine("Transcript " + id);
  }
}

}  // namespace vek
