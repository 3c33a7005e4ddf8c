// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "records/BriefDTO.hpp"
#include "records/CompletedTranscriptDTO.hpp"
#include "records/CustomerDTO.hpp"
#include "records/DeletedTranscriptDTO.hpp"
#include "records/NewTranscriptDTO.hpp"
#include "records/TranscriptContentDTO.hpp"
#include "records/TranscriptDTO.hpp"
#include "records/TranscriptMetadataDTO.hpp"
#include "support/BackendClient.hpp"

namespace vek::test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr char unknownID[] = "00000000-0000-4000-8000-000000000000";

std::string completion(std::string const& transcript, std::string const& customer) {
  return R"({"transcript_id": ")" + transcript + R"(", "customer_id": ")" + customer + "\"}";
}

/// Changes a database of the services behind their back.
void execute(std::filesystem::path const& file, char const* script) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, script, nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(database);
}

class Endpoints : public testing::Test {
 protected:
  static void SetUpTestSuite() { services_ = std::make_unique<LocalServices>(); }
  static void TearDownTestSuite() { services_.reset(); }

  static CustomerDTO customer(BackendClient& client, std::size_t index) {
    return client.get("customers").as<std::vector<CustomerDTO>>().at(index);
  }

  inline static std::unique_ptr<LocalServices> services_;
  BackendClient client{*services_};
};

TEST_F(Endpoints, ANewFolderHasADozenCustomersWithNotesAndSomePriorities) {
  auto const customers = client.get("customers").as<std::vector<CustomerDTO>>();
  EXPECT_THAT(customers, SizeIs(12));
  EXPECT_THAT(customers.front().notes, Not(IsEmpty()));
  EXPECT_EQ(customers.front().notes.front().customerId, customers.front().id.lowerCaseText());
  EXPECT_TRUE(customers.at(0).priority.has_value());
  EXPECT_FALSE(customers.at(1).priority.has_value());
}

TEST_F(Endpoints, BriefsAreOfOneCustomerOrOfAll) {
  auto const id = customer(client, 0).id;
  auto const all = client.get("preMeetingsBriefs").as<std::vector<BriefDTO>>();
  auto const some =
      client.get("preMeetingsBriefs?customer_id=" + id.upperCaseText()).as<std::vector<BriefDTO>>();
  EXPECT_THAT(some, SizeIs(2));
  EXPECT_GT(all.size(), some.size());
}

TEST_F(Endpoints, ATranscriptGoesFromStartedToCompleteAndIsReadBack) {
  auto const made = client.post("createMeetingTranscript", "{}").as<NewTranscriptDTO>();
  EXPECT_EQ(made.status, TranscriptionStatusDTO::started);
  EXPECT_FALSE(made.customerID.has_value());
  auto const id = made.id.lowerCaseText();
  auto const row = [&] {
    return client.get("transcripts?insight_id=" + made.insightID->upperCaseText())
        .as<std::vector<TranscriptDTO>>()
        .at(0);
  };

  EXPECT_EQ(client.append(id, "We will meet \"there\".\n").status, 200);
  EXPECT_EQ(client.append(id, "Süß, 北京, \xF0\x9F\x99\x82").status, 200);
  EXPECT_EQ(row().status, TranscriptionStatusDTO::inProgress);
  EXPECT_EQ(row().transcript, "We will meet \"there\".\nSüß, 北京, \xF0\x9F\x99\x82");

  auto const owner = customer(client, 3).id;
  auto const completed = client
                             .post("completeMeetingTranscript",
                                   completion(made.id.upperCaseText(), owner.lowerCaseText()))
                             .as<CompletedTranscriptDTO>();
  EXPECT_EQ(completed.status, TranscriptionStatusDTO::completed);
  EXPECT_EQ(row().status, TranscriptionStatusDTO::completed);
  auto const ofOwner = client.get("transcripts?customer_id=" + owner.upperCaseText());
  EXPECT_THAT(ofOwner.as<std::vector<TranscriptDTO>>(), SizeIs(1));

  auto const content = client.content(made.id.upperCaseText()).as<TranscriptContentDTO>();
  EXPECT_EQ(content.transcript, row().transcript);
  EXPECT_THAT(*content.analysis, HasSubstr("- [ ] We will meet"));

  auto const metadata =
      client.get("getAllTranscriptsMetadata").as<std::vector<TranscriptMetadataDTO>>();
  EXPECT_EQ(metadata.at(0).id, made.id);
  EXPECT_EQ(metadata.at(0).customerID, owner);
  EXPECT_GE(metadata.at(0).lastModifiedOn, metadata.at(0).createdOn);

  auto const deleted = client.request("DELETE", "transcripts/" + made.id.upperCaseText(), "");
  EXPECT_EQ(deleted.as<DeletedTranscriptDTO>().status, TranscriptionStatusDTO::deleted);
  EXPECT_EQ(client.content(id).status, 404);
  EXPECT_EQ(client.append(id, "more").status, 404);
  EXPECT_EQ(client.request("DELETE", "transcripts/" + id, "").status, 404);
}

TEST_F(Endpoints, ATranscriptMayBeMadeForACustomerAndAnInsight) {
  auto const owner = customer(client, 5).id;
  auto const made =
      client
          .post("createMeetingTranscript", R"({"customer_id": ")" + owner.lowerCaseText() +
                                               R"(", "insight_id": ")" + unknownID + "\"}")
          .as<NewTranscriptDTO>();
  EXPECT_EQ(made.customerID, owner);
  EXPECT_EQ(made.insightID, UUID::parse(unknownID));
}

TEST_F(Endpoints, TheAnalysisOfATextIsAnsweredAsText) {
  auto const answer = client.post("getTranscriptAnalysis", R"({"transcript": "I will call."})");
  EXPECT_THAT(answer.as<std::string>(), HasSubstr("- [ ] I will call."));
  EXPECT_EQ(client.post("getTranscriptAnalysis", R"({"transcript": ""})").as<std::string>(), "");
  EXPECT_EQ(*client.content(client.create()).as<TranscriptContentDTO>().analysis, "");
}

TEST_F(Endpoints, AnAnalysisIsKeptUntilItsRulesOrItsTextChange) {
  LocalServices own;
  BackendClient me(own);
  auto const id = me.create();
  me.append(id, "I will call.");
  auto const analysis = [&] { return *me.content(id).as<TranscriptContentDTO>().analysis; };
  auto const change = [&](char const* script) {
    EXPECT_EQ(own.stop(), 0);
    execute(own.folder() / "backend.sqlite", script);
    own.start();
  };
  auto const made = analysis();
  change("UPDATE analyses SET text = 'kept'");
  EXPECT_EQ(analysis(), "kept");
  change("UPDATE analyses SET maker = 'rules 0'");
  EXPECT_EQ(analysis(), made);
  me.append(id, " I will write.");
  EXPECT_THAT(analysis(), HasSubstr("I will write."));
}

TEST_F(Endpoints, RefuseWhatTheyCanNotDoWithAMessage) {
  auto const known = client.create();
  auto const owner = customer(client, 0).id.lowerCaseText();
  auto const other = customer(client, 1).id.lowerCaseText();
  auto const assigned = client.create();
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(client.post("completeMeetingTranscript", completion(assigned, owner)).status, 200);
  }
  struct Case {
    char const* method;
    std::string path;
    std::string body;
    long status;
    char const* message;
  };
  Case const cases[] = {
      {"GET", "nothing", "", 404, "There is no such endpoint."},
      {"GET", "/", "", 404, "There is no such endpoint."},
      {"GET", "/api/v1/agents", "", 404, "There is no such endpoint."},
      {"PUT", "transcripts", "{}", 405, "This endpoint takes GET only."},
      {"GET", "createMeetingTranscript", "", 405, "This endpoint takes POST only."},
      {"GET", "transcripts/" + known, "", 405, "This endpoint takes DELETE only."},
      {"POST", "createMeetingTranscript", "", 400, "JSON"},
      {"POST", "createMeetingTranscript", "[]", 400, "$: expected object, got list"},
      {"POST", "createMeetingTranscript", R"({"customer_id": 7})", 400, "$.customer_id"},
      {"POST", "createMeetingTranscript", R"({"customer_id": "x"})", 400, "customer_id is no"},
      {"POST", "createMeetingTranscript", R"({"insight_id": "x"})", 400, "insight_id is no"},
      {"POST", "createMeetingTranscript", R"({"customer_id": ")" + std::string(unknownID) + "\"}",
       404, "There is no customer 0000"},
      {"POST", "appendMeetingTranscript", R"({"transcript_id": ")" + known + "\"}", 400,
       "$.transcript: missing"},
      {"POST", "appendMeetingTranscript", R"({"transcript": "a", "transcript_id": "b"})", 400,
       "transcript_id is no identifier."},
      {"POST", "appendMeetingTranscript", "{\"transcript\": \"\xFF\"}", 400, "JSON"},
      {"POST", "completeMeetingTranscript", completion(unknownID, owner), 404, "no transcript"},
      {"POST", "completeMeetingTranscript", completion(known, unknownID), 404, "no customer"},
      {"POST", "completeMeetingTranscript", completion(assigned, other), 409,
       "The transcript has another customer already."},
      {"POST", "getTranscriptContent", completion(unknownID, owner), 404, "no transcript"},
      {"POST", "getTranscriptAnalysis", "{\"transcript\": ", 400, "JSON"},
      {"GET", "transcripts?customer_id=", "", 400, "customer_id is no identifier."},
      {"GET", "transcripts?insight_id=7", "", 400, "insight_id is no identifier."},
      {"GET", "transcripts?insight_id=%zz", "", 400, "The URL is malformed."},
      {"GET", "preMeetingsBriefs?customer_id=7", "", 400, "customer_id is no identifier."},
      {"DELETE", "transcripts/", "", 400, "is no identifier."},
      {"DELETE", std::string("transcripts/x/") + unknownID, "", 400, "is no identifier."},
  };
  for (auto const& [method, path, body, status, message] : cases) {
    SCOPED_TRACE(std::string(method) + " " + path + " " + body);
    auto const answer = client.request(method, path, body);
    EXPECT_EQ(answer.status, status);
    EXPECT_THAT(answer.message(), HasSubstr(message));
  }
  EXPECT_EQ(client.request("HEAD", "customers", "").status, 405);
}

TEST_F(Endpoints, AskForAValidTokenOnEveryRequest) {
  auto const token = client.token;
  for (auto const& wrong : {std::string(), std::string("x"), token + "x", token.substr(1)}) {
    client.token = wrong;
    auto const answer = client.get("customers");
    EXPECT_EQ(answer.status, 401);
    EXPECT_THAT(answer.message(), HasSubstr("access token"));
  }
  client.token.clear();
  EXPECT_EQ(client.request("GET", "customers", "", {"Authorization: Basic " + token}).status, 401);
}

TEST_F(Endpoints, AUserSeesNothingOfAnother) {
  LocalServices const services;
  auto const folder = services.folder();
  BackendClient me(services);
  auto const mine = me.create();
  me.append(mine, "private");
  execute(folder / "backend.sqlite", "INSERT INTO users (key, name) VALUES (77, 'other')");
  execute(folder / "identity.sqlite", "UPDATE accounts SET user = 77");

  BackendClient other(services);
  EXPECT_THAT(other.get("getAllTranscriptsMetadata").as<std::vector<TranscriptMetadataDTO>>(),
              IsEmpty());
  EXPECT_THAT(other.get("transcripts").as<std::vector<TranscriptDTO>>(), IsEmpty());
  EXPECT_THAT(other.get("customers").as<std::vector<CustomerDTO>>(), IsEmpty());
  EXPECT_THAT(other.get("preMeetingsBriefs").as<std::vector<BriefDTO>>(), IsEmpty());
  EXPECT_EQ(other.content(mine).status, 404);
  EXPECT_EQ(other.append(mine, "!").status, 404);
  EXPECT_EQ(other.request("DELETE", "transcripts/" + mine, "").status, 404);
  execute(folder / "identity.sqlite", "UPDATE accounts SET user = 1");
  EXPECT_EQ(*me.content(mine).as<TranscriptContentDTO>().transcript, "private");
}

TEST_F(Endpoints, ABodyBeyondTheLimitIsRefusedAndTheServerGoesOn) {
  std::string const large = R"({"transcript": ")" + std::string(17 << 20, 'a') + "\"}";
  auto const refused = client.post("getTranscriptAnalysis", large);
  EXPECT_EQ(refused.status, 413) << refused.failure;
  EXPECT_THAT(refused.message(), HasSubstr("too large"));
  auto const headers = client.request("GET", "customers", "", {"X: " + std::string(20'000, 'x')});
  EXPECT_EQ(headers.status, 431) << headers.failure;
  EXPECT_EQ(
      client.request("POST", "createMeetingTranscript", "{}", {"Expect: 100-continue"}).status,
      200);
}

}  // namespace

}  // namespace vek::test
