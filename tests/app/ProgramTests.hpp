// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>

#include <boost/json.hpp>
#include <string>
#include <vector>

#include "support/LocalServices.hpp"
#include "support/SpeechSamples.hpp"
#include "support/StoredCredentials.hpp"
#include "support/VekctlRun.hpp"
#include "support/WordErrors.hpp"

namespace vek::test {

/// A recording of the samples, as a file.
inline std::string speechFile(std::string const& name) {
  return std::string(VEK_SAMPLE_SPEECH) + "/" + name + ".wav";
}

inline SpeechSample speechSample(std::string const& name) {
  for (auto& sample : speechSamples(VEK_SAMPLE_SPEECH)) {
    if (sample.name == name + ".wav") return sample;
  }
  throw std::runtime_error("There is no sample " + name);
}

/// What is said in it, but for a word or two.
inline void expectSaid(std::string const& name, std::string const& text) {
  EXPECT_LE(wrongWords(speechSample(name).transcript, text), 2U) << text;
}

/// What a run of `vekctl record` printed.
struct Recorded {
  std::string id;
  /// The pieces, as they are joined where they are stored.
  std::string text;

  explicit Recorded(std::string const& output) {
    constexpr std::string_view last = "Transcript ";
    auto const at = output.rfind(last);
    EXPECT_NE(at, std::string::npos) << output;
    if (at == std::string::npos) return;
    id = output.substr(at + last.size(), 36);
    EXPECT_EQ(output.substr(at + last.size()), id + "\n");
    text = output.substr(0, at == 0 ? 0 : at - 1);
  }
};

/// A backend that `surroundings` lead to.
class ProgramTests : public testing::Test {
 protected:
  ProgramTests() {
    surroundings.deployment = {{"backendURL", services.url()},
                               {"recogniserURL", services.webSocketURL()},
                               {"trustedAuthority", services.authority().string()},
                               {"authConfiguration", (services.folder() / "Auth0.plist").string()},
                               {"modelsFolder", modelsFolder().string()}};
    storeCredentials(services, surroundings.dataHome());
  }

  [[nodiscard]] VekctlResult run(std::vector<std::string> arguments) const {
    return runVekctl(surroundings, std::move(arguments));
  }
  /// The text of a transcript as the backend has it.
  [[nodiscard]] std::string storedText(std::string const& id) const {
    auto const result = run({"show", id, "--json"});
    EXPECT_EQ(result.status, 0) << result.messages;
    if (result.status != 0) return {};
    return boost::json::parse(result.output).at("transcript").as_string().c_str();
  }
  /// The identifiers of all transcripts, newest first.
  [[nodiscard]] std::vector<std::string> storedTranscripts() const {
    auto const result = run({"transcripts", "--json"});
    EXPECT_EQ(result.status, 0) << result.messages;
    std::vector<std::string> ids;
    if (result.status != 0) return ids;
    auto const rows = boost::json::parse(result.output);
    for (auto const& row : rows.as_array()) {
      ids.emplace_back(row.at("transcript_id").as_string());
    }
    return ids;
  }

  LocalServices services;
  VekctlSurroundings surroundings;
};

}  // namespace vek::test
