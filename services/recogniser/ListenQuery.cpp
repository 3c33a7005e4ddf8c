// SPDX-License-Identifier: MIT
#include "services/recogniser/ListenQuery.hpp"

#include <fmt/format.h>

#include <set>
#include <string_view>

#include "platform/Number.hpp"
#include "services/support/HTTPMessage.hpp"

namespace vek::services {

namespace {

Refusal badItem(std::string_view name, std::string_view value, std::string_view expected) {
  return {400, fmt::format("\"{}\" is \"{}\", but it must be {}.", name, value, expected)};
}

void require(std::string_view name, std::string_view value, std::string_view only) {
  if (value != only) throw badItem(name, value, fmt::format("\"{}\"", only));
}

std::uint32_t number(std::string_view name, std::string_view value, std::uint32_t least,
                     std::uint32_t most) {
  auto const read = vek::number<std::uint32_t>(value);
  if (read && *read >= least && *read <= most) return *read;
  throw badItem(name, value, fmt::format("a number from {} to {}", least, most));
}

bool truth(std::string_view name, std::string_view value) {
  if (value == "true") return true;
  if (value == "false") return false;
  throw badItem(name, value, "\"true\" or \"false\"");
}

}  // namespace

ListenQuery ListenQuery::parse(std::vector<std::pair<std::string, std::string>> const& items) {
  ListenQuery query;
  std::set<std::string_view> missing{"model", "encoding", "sample_rate", "channels"};
  std::set<std::string_view> seen;
  for (auto const& [name, value] : items) {
    if (!seen.insert(name).second) throw Refusal(400, fmt::format("\"{}\" is given twice.", name));
    missing.erase(name);
    if (name == "model") {
      require(name, value, "nova-2-meeting");
    } else if (name == "encoding") {
      require(name, value, "linear16");
    } else if (name == "sample_rate") {
      query.sampleRate = number(name, value, 8'000, 192'000);
    } else if (name == "channels") {
      query.channels = number(name, value, 1, 8);
    } else if (name == "interim_results") {
      query.interimResults = truth(name, value);
    } else if (name == "diarize") {
      query.diarize = truth(name, value);
    } else if (name == "endpointing") {
      query.endpointing = truth(name, value);
    } else {
      throw Refusal(400, fmt::format("\"{}\" is unknown here.", name));
    }
  }
  if (!missing.empty()) {
    throw Refusal(400, fmt::format("\"{}\" is missing.", *missing.begin()));
  }
  return query;
}

}  // namespace vek::services
