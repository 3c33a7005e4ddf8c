// SPDX-License-Identifier: MIT
#include "services/recogniser/ListenResults.hpp"

#include <fmt/chrono.h>

#include <algorithm>
#include <chrono>
#include <sstream>

namespace vek::services {

namespace {

constexpr char modelUUID[] = "5c0f6bb5-6a39-4a0b-9d2f-0a9d3f1e7c42";

/// The engine gives no confidence, neither of a word nor of a text: 0 claims nothing.
constexpr double unknownConfidence = 0;

Deepgram::ModelInfoDTO modelInfo() {
  return {.name = "moonshine-base", .version = "int8", .arch = "moonshine"};
}

/// The engine knows when speech began and ended, but not when each of its words was said: they
/// share that time by their length.
std::vector<Deepgram::WordDTO> words(std::string const& text, ListenResults::Stretch speech) {
  std::vector<Deepgram::WordDTO> found;
  std::size_t letters = 0;
  std::istringstream input(text);
  for (std::string word; input >> word;) {
    letters += word.size();
    found.push_back({.word = std::move(word), .confidence = unknownConfidence});
  }
  auto start = speech.start;
  for (auto& word : found) {
    auto const share = static_cast<double>(word.word.size()) / static_cast<double>(letters);
    word.start = start;
    word.end = start += share * (speech.end - speech.start);
  }
  return found;
}

}  // namespace

Deepgram::ResultDTO ListenResults::result(std::string const& text, Stretch speech,
                                          double end) const {
  return {.type = "Results",
          .channelIndex = {0, 1},  // the first of one: all channels are heard as one
          .duration = end - settledUntil_,
          .start = settledUntil_,
          .channel = {.alternatives = {{.transcript = text,
                                        .confidence = unknownConfidence,
                                        .words = words(text, speech)}}},
          .metadata = {.requestId = requestID_, .modelInfo = modelInfo(), .modelUUID = modelUUID}};
}

Deepgram::ResultDTO ListenResults::interim(std::string const& text, double end) const {
  return result(text, {settledUntil_, end}, end);
}

Deepgram::ResultDTO ListenResults::settled(std::string const& text, Stretch speech, double end) {
  end = std::max(end, settledUntil_);
  auto record = result(text, speech, end);
  record.isFinal = true;
  settledUntil_ = end;
  return record;
}

Deepgram::MetadataDTO ListenResults::closing(std::string sha256, double duration,
                                             std::uint32_t channels) const {
  auto const now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  return {.type = "Metadata",
          .transactionKey = requestID_,
          .requestId = requestID_,
          .sha256 = std::move(sha256),
          .created = fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(now)),
          .duration = duration,
          .channels = channels,
          .models = {{modelUUID}},
          .modelInfo = {{{modelUUID, modelInfo()}}}};
}

}  // namespace vek::services
