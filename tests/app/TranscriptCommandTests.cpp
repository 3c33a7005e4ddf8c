// SPDX-License-Identifier: MIT
// Reading, assigning and following what the backend holds.
#include <fmt/format.h>

#include <csignal>

#include "app/ProgramTests.hpp"
#include "records/CustomerDTO.hpp"
#include "records/JSON.hpp"
#include "records/TranscriptMetadataDTO.hpp"
#include "support/BackendClient.hpp"
#include "support/HTTPSTestServer.hpp"

namespace vek::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

class TranscriptCommands : public ProgramTests {
 protected:
  /// The identifier of a transcript with this text.
  std::string stored(std::string const& text) {
    auto id = backend.create();
    EXPECT_EQ(backend.append(id, text).status, 200);
    return id;
  }
  /// What a command prints that is to succeed.
  std::string printed(std::vector<std::string> arguments) const {
    auto const result = run(std::move(arguments));
    EXPECT_EQ(result.status, 0) << result.messages;
    return result.output;
  }
  /// What a command says that is to fail.
  [[nodiscard]] std::string failure(std::vector<std::string> arguments) const {
    auto const result = run(std::move(arguments));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    return result.messages;
  }
  /// The identifiers of the rows, sorted.
  [[nodiscard]] std::vector<std::string> listed(std::vector<std::string> const& options) const {
    std::vector<std::string> arguments = {"transcripts", "--json"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    std::vector<std::string> ids;
    auto const rows = boost::json::parse(printed(std::move(arguments)));
    for (auto const& row : rows.as_array()) {
      ids.emplace_back(row.at("transcript_id").as_string());
    }
    std::ranges::sort(ids);
    return ids;
  }

  BackendClient backend{services};
  std::vector<CustomerDTO> const customers =
      backend.get("customers").as<std::vector<CustomerDTO>>();
};

TEST_F(TranscriptCommands, AreListedByCustomerAndText) {
  auto const one = stored("We spoke of the \u00dcBER-OFFER.");
  auto const other = stored("We spoke of the u\u0308ber-offer, and of March.");
  auto const third = stored("");
  auto const& customer = customers.front();
  EXPECT_THAT(printed({"assign", one, customer.customerName}),
              MatchesRegex(one + "  [-0-9]+ [:0-9]+  " + customer.customerName + "\n"));
  EXPECT_THAT(listed({"--customer", customer.id.upperCaseText()}), ElementsAre(one));
  EXPECT_THAT(listed({"--without-customer"}),
              ElementsAre(std::min(other, third), std::max(other, third)));
  EXPECT_THAT(listed({"--text", "\u00fcber-Offer"}),
              ElementsAre(std::min(one, other), std::max(one, other)));
  EXPECT_THAT(listed({"--text", "\u00fcber-Offer", "--without-customer"}), ElementsAre(other));
  EXPECT_EQ(run({"transcripts", "--text", "nobody said this"}).messages,
            "There is no such transcript.\n");
  EXPECT_THAT(failure({"transcripts", "--customer", "Nobody"}),
              EndsWith("There is no customer 'Nobody'.\n"));

  std::string names;
  for (auto const& each : customers) {
    names += each.id.lowerCaseText() + "  " + each.customerName + "\n";
  }
  EXPECT_EQ(printed({"customers"}), names);
}

TEST_F(TranscriptCommands, ACustomerIsAssignedOnce) {
  auto const id = stored("said");
  EXPECT_EQ(failure({"assign", id, "Nobody"}), "error: There is no customer 'Nobody'.\n");
  auto const unknown = UUID::random().lowerCaseText();
  auto const& customer = customers.back();
  EXPECT_EQ(failure({"assign", unknown, customer.customerName}),
            "error: There is no transcript " + unknown + ".\n");
  auto const row =
      boost::json::parse(printed({"assign", "--json", id, customer.id.lowerCaseText()}));
  EXPECT_EQ(row.at("customer_name").as_string(), customer.customerName);
  EXPECT_EQ(failure({"assign", id, customers.front().customerName}),
            "error: The transcript has a customer already.\n");
  auto const metadata =
      backend.get("getAllTranscriptsMetadata").as<std::vector<TranscriptMetadataDTO>>();
  EXPECT_EQ(metadata.at(0).customerID, customer.id);
}

TEST_F(TranscriptCommands, AreExportedAsTheyAre) {
  std::string const said = "# 5*3 is <b>15</b>\n1. first\r\n   - [x] & \x1b[2J done";
  auto const id = stored(said);
  printed({"assign", id, customers.front().customerName});
  auto const markdown = printed({"export", id});
  EXPECT_THAT(markdown, StartsWith("# Conversation of 2"));
  EXPECT_THAT(markdown, HasSubstr("\n\nCustomer: Alder \\& Finch Logistics\n\n## Transcript\n\n"
                                  "\\# 5\\*3 is \\<b\\>15\\</b\\>\n\n1\\. first\n\n"
                                  "\\- \\[x\\] \\& \x1b\\[2J done\n\n## Analysis\n\n# "));
  EXPECT_THAT(printed({"export", id, "--format", "txt"}),
              HasSubstr("  Alder & Finch Logistics\n\n" + said + "\n\n# "));
  auto const object = boost::json::parse(printed({"export", id, "--format", "json"}));
  EXPECT_EQ(object.at("transcript").as_string(), said);
  EXPECT_EQ(object.at("customer_name").as_string(), "Alder & Finch Logistics");
  EXPECT_THAT(std::string(object.at("analysis").as_string()), StartsWith("# "));
  auto const unknown = UUID::random().lowerCaseText();
  EXPECT_EQ(failure({"export", unknown}), "error: There is no transcript " + unknown + ".\n");
}

TEST_F(TranscriptCommands, AnAnalysisIsMadeOfATextThatIsThere) {
  EXPECT_THAT(printed({"analyse", stored("We agreed to send the offer on Monday.")}),
              StartsWith("# "));
  EXPECT_EQ(failure({"analyse", stored("")}), "error: There is no text to analyse.\n");
}

TEST_F(TranscriptCommands, AWatchTellsWhatChanges) {
  auto const id = stored("one two");
  VekctlRun watch(surroundings, {"watch", "--json", "--every", "0.2"});
  ASSERT_TRUE(watch.waitForOutput("\"words\":2,\"analysed\":true}\n")) << watch.messages();
  EXPECT_THAT(watch.lines(),
              ElementsAre("{\"loading\":false,\"count\":0}", "{\"loading\":true,\"count\":0}",
                          "{\"loading\":true,\"count\":1}", "{\"loading\":false,\"count\":1}",
                          HasSubstr(id)));
  backend.append(id, "\nthree");
  ASSERT_TRUE(watch.waitForOutput("\"words\":3,"));
  auto const other = stored("four");
  ASSERT_TRUE(watch.waitForOutput("{\"transcript_id\":\"" + other));
  backend.request("DELETE", "transcripts/" + id, "");
  ASSERT_TRUE(watch.waitForOutput("{\"transcript_id\":\"" + id + "\",\"removed\":true}\n"));
  services.stop();
  ASSERT_TRUE(watch.waitForMessage("error: Could not connect to the server"));
  ASSERT_TRUE(watch.waitForOutput(",\"error\":\"Could not connect to the server"));
  services.start();
  auto const third = stored("five six");
  ASSERT_TRUE(watch.waitForOutput(third));
  watch.signal(SIGINT);
  EXPECT_EQ(watch.wait(), 0);
}

TEST_F(TranscriptCommands, AWatchEndsWhenNobodyReadsIt) {
  VekctlRun watch(surroundings, {"watch", "--json", "--every", "3600"});
  ASSERT_TRUE(watch.waitForOutput("{"));
  watch.closeOutput();
  EXPECT_NE(watch.wait(), -1);
}

/// A backend with transcripts of which each content is what the test says.
class TranscriptFaults : public ProgramTests {
 protected:
  static constexpr int count = 14;

  TranscriptFaults() {
    surroundings.deployment["backendURL"] = server.url();
    surroundings.deployment["trustedAuthority"] = authority.authority().string();
  }
  static std::string id(int number) {
    return fmt::format("41bcf776-aa28-4ccf-8362-93fa802f{:04}", number);
  }
  static ScriptedAnswer metadata() {
    std::string rows;
    for (int i = 0; i < count; ++i) {
      rows += fmt::format(R"({}{{"transcript_id":"{}","created_on":"05/15/24 03:04:{:02} PM UTC",)"
                          R"("last_modified_on":"05/15/24 03:04:05 PM UTC"}})",
                          i == 0 ? "" : ",", id(i), i);
    }
    return ScriptedAnswer::of(200, "[" + rows + "]");
  }
  ScriptedAnswer answer(ReceivedRequest const& request) const {
    if (request.line.find("completeMeeting") != std::string::npos) return completion;
    if (request.line.find("customers") != std::string::npos) {
      return ScriptedAnswer::of(200, "[" + json::encode(customer) + "]");
    }
    if (request.line.find("Metadata") != std::string::npos) return metadata();
    for (int i = 0; i < count; ++i) {
      if (request.body.find(id(i)) != std::string::npos) return contents(i);
    }
    return ScriptedAnswer::of(404, "");
  }

  TestAuthority const authority;
  CustomerDTO const customer{.customerName = "Adam", .id = UUID::random()};
  std::function<ScriptedAnswer(int)> contents = [](int) { return ScriptedAnswer::of(200, "{}"); };
  ScriptedAnswer completion;
  HTTPSTestServer const server{authority,
                               [this](ReceivedRequest const& each) { return answer(each); }};
};

TEST_F(TranscriptFaults, TextsThatAreMissingAreToldBesideThoseThatAreThere) {
  contents = [](int number) {
    return number % 7 == 0 ? ScriptedAnswer::of(500, R"({"message":"It rains in."})")
                           : ScriptedAnswer::of(200, R"({"transcript":"said"})");
  };
  auto const result = run({"transcripts", "--json", "--text", "said"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(boost::json::parse(result.output).as_array().size(), 12U);
  EXPECT_THAT(result.messages, StartsWith("error: Texts of 2 transcripts are missing: "));
  EXPECT_THAT(result.messages, EndsWith("It rains in.\n"));
}

TEST_F(TranscriptFaults, AnAssignmentThatIsRefusedIsTold) {
  for (int const status : {409, 500}) {
    completion = ScriptedAnswer::of(status, R"({"message":"It rains in."})");
    auto const result = run({"assign", id(3), "adam"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.messages, "error: Unexpected HTTP response from " + server.url() +
                                   "/api/v1/agents/completeMeetingTranscript. Code: " +
                                   std::to_string(status) + ". Additional info: It rains in.\n");
  }
}

TEST_F(TranscriptFaults, AnyTextIsShownOrRefusedByItself) {
  struct Row {
    std::string json;
    /// None is refused.
    std::optional<std::string> text;
  };
  std::string const long50MB(50U << 20U, 'x');
  std::vector<Row> const rows = {
      {R"(\ud83d\ude00)", "\U0001F600"},
      {R"(lone \ud83d high)", std::nullopt},
      {R"(lone \ude00 low)", std::nullopt},
      {"bad \xC3( UTF-8", std::nullopt},
      {R"(\u0000 and \u001b[31m)", std::string("\0 and \x1b[31m", 11)},
      {"e\xCC\x81\xCC\x82\xCC\x83 combining", "e\xCC\x81\xCC\x82\xCC\x83 combining"},
      {"\xE2\x80\xAE\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D",
       "\xE2\x80\xAE\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D"},
      {long50MB, long50MB}};
  contents = [&](int number) {
    return ScriptedAnswer::of(200,
                              "{\"transcript\":\"" + rows.at(std::size_t(number)).json + "\"}");
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    auto const result = run({"show", "--json", id(static_cast<int>(i))});
    EXPECT_EQ(result.status, rows[i].text ? 0 : 1) << i;
    if (rows[i].text) {
      auto const shown = boost::json::parse(result.output).at("transcript").as_string();
      EXPECT_TRUE(std::string_view(shown) == *rows[i].text) << i;
    } else {
      EXPECT_THAT(result.messages, StartsWith("error: JSON decoding error from ")) << i;
    }
  }
}

}  // namespace
}  // namespace vek::test
