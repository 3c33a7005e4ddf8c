// SPDX-License-Identifier: MIT
#include "records/BriefDTO.hpp"
#include "records/CompleteTranscriptDTO.hpp"
#include "records/CompletedTranscriptDTO.hpp"
#include "records/CreateTranscriptDTO.hpp"
#include "records/Customer.hpp"
#include "records/CustomerDTO.hpp"
#include "records/DecodingError.hpp"
#include "records/DeletedTranscriptDTO.hpp"
#include "records/ErrorDTO.hpp"
#include "records/JSON.hpp"
#include "records/NewTranscriptDTO.hpp"
#include "records/Transcript.hpp"
#include "records/TranscriptContentDTO.hpp"
#include "records/TranscriptDTO.hpp"
#include "records/TranscriptMetadataDTO.hpp"
#include "records/UpdateTranscriptDTO.hpp"

namespace vek {
namespace {

std::string const id = "0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9";

std::string const customer = R"({"customer_name":"Ada","customer_id":")" + id +
                             R"(","agent_status":"active","last_event_date":"any text",)"
                             R"("data_categories":["a","b"],"priority":{"label":"High","value":3,)"
                             R"("created_on_str":"c","last_modified_on_str":"l","public_id":"p",)"
                             R"("vek_org_id":"o","vek_user_id":"u"},"notes":[{"name":"n",)"
                             R"("customer_id":"no identifier","artifact_type":"t",)"
                             R"("artifact_id":"7","document_path":"d","created_on_str":"c",)"
                             R"("last_modified_on_str":"l","public_id":"p","vek_org_id":"o",)"
                             R"("vek_user_id":"u"}],"domain":"example.com"})";

std::string replaced(std::string text, std::string_view part, std::string_view other) {
  auto const at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return text.replace(at, part.size(), other);
}

/// The text that comes out when `text` is read as `Record` and written again, or the error.
template <class Record>
std::string again(std::string const& text) {
  try {
    return json::encode(json::decode<Record>(text));
  } catch (DecodingError const& error) {
    return error.what();
  }
}

using Again = std::string (*)(std::string const&);

TEST(Records, EachKeepsAllItsKeys) {
  struct Case {
    Again again;
    std::string text;
  };
  std::string const date = "\"05/15/24 03:04:05 PM UTC\"";
  for (auto const& [again, text] : {
           Case{again<CreateTranscriptDTO>, R"({"customer_id":"c","insight_id":"i"})"},
           Case{again<UpdateTranscriptDTO>, R"({"transcript":"t\"\n","transcript_id":"i"})"},
           Case{again<CompleteTranscriptDTO>, R"({"customer_id":"c","transcript_id":"i"})"},
           Case{again<ErrorDTO>, R"({"message":"m"})"},
           Case{again<NewTranscriptDTO>, R"({"transcript_id":")" + id + R"(","insight_id":")" + id +
                                             R"(","created_on":"any","customer_id":")" + id +
                                             R"(","status":"STARTED"})"},
           Case{again<CompletedTranscriptDTO>,
                R"({"status":"LLM_ANALYSIS_COMPLETE","llm_analysis_status":"x"})"},
           Case{again<DeletedTranscriptDTO>,
                R"({"transcript_id":")" + id + R"(","status":"DELETED"})"},
           Case{again<TranscriptDTO>, R"({"transcript_id":")" + id + R"(","insight_id":")" + id +
                                          R"(","transcript":"t","status":"IN_PROGRESS",)"
                                          R"("created_on":)" +
                                          date + "}"},
           Case{again<TranscriptMetadataDTO>,
                R"({"transcript_id":")" + id + R"(","insight_id":")" + id + R"(","created_on":)" +
                    date + R"(,"last_modified_on":)" + date + R"(,"customer_id":")" + id + "\"}"},
           Case{again<TranscriptContentDTO>, R"({"transcript":"t","llm_transcript_analysis":"a"})"},
           Case{again<BriefDTO>, R"({"title":"t","session_id":")" + id + R"(","insight_id":")" +
                                     id + R"(","read_status":"FAILED"})"},
           Case{again<CustomerDTO>, customer},
       }) {
    EXPECT_EQ(again(text), text);
  }
}

TEST(Records, EmptyOptionalsAreLeftOut) {
  EXPECT_EQ(json::encode(CreateTranscriptDTO()), "{}");
  EXPECT_EQ(again<TranscriptContentDTO>(R"({"transcript":null,"llm_transcript_analysis":null})"),
            "{}");
  EXPECT_EQ(again<CompletedTranscriptDTO>(R"({"other":[1,{}]})"), "{}");
}

TEST(Records, ErrorsNameThePlace) {
  struct Case {
    Again again;
    std::string text;
    std::string error;
  };
  std::string const brief = R"({"title":"t","session_id":")" + id + R"(","insight_id":")" + id +
                            R"(","read_status":"r"})";
  std::string const started = R"({"transcript_id":")" + id + R"(","status":"STARTED"})";
  for (auto const& [again, text, error] : {
           Case{again<std::vector<BriefDTO>>, "[" + replaced(brief, R"("t")", "7") + "]",
                "$[0].title: expected text, got number"},
           Case{again<std::vector<BriefDTO>>, "{}", "$: expected list, got object"},
           Case{again<BriefDTO>, replaced(brief, id, "1234"),
                "$.session_id: expected an identifier, got another text"},
           Case{again<BriefDTO>, replaced(brief, "\"t\"", "null"),
                "$.title: expected text, got null"},
           Case{again<std::vector<NewTranscriptDTO>>,
                "[" + started + "," + replaced(started, "STARTED", "started") + "]",
                "$[1].status: unknown value \"started\""},
           Case{again<CustomerDTO>, replaced(customer, "notes", "other"), "$.notes: missing"},
           Case{again<CustomerDTO>, replaced(customer, "artifact_id", "other"),
                "$.notes[0].artifact_id: missing"},
           Case{again<CustomerDTO>, replaced(customer, ":3,", ":3.5,"),
                "$.priority.value: expected integer, got another number"},
           Case{again<TranscriptDTO>,
                R"({"transcript_id":")" + id + R"(","transcript":"t","status":"STARTED"})",
                "$.insight_id: missing"},
           Case{again<TranscriptMetadataDTO>,
                R"({"transcript_id":")" + id + R"(","created_on":"2024-05-15"})",
                "$.created_on: expected a date, got another text"},
       }) {
    EXPECT_EQ(again(text), error);
  }
  for (char const* text : {"", "{", "{} x", "\"\xff\""}) {
    EXPECT_THAT(again<ErrorDTO>(text), testing::StartsWith("$: not JSON: ")) << text;
  }
}

TEST(Records, CustomerNeedsNoPriority) {
  auto const text = replaced(customer, "\"priority\"", "\"other\"");
  auto const decoded = json::decode<CustomerDTO>(text);
  EXPECT_EQ(decoded.priority, std::nullopt);
  EXPECT_NE(decoded, json::decode<CustomerDTO>(customer));
  EXPECT_EQ(Customer::from(decoded), (Customer{*UUID::parse(id), "Ada"}));
}

TEST(Records, ContentTurnsIntoStates) {
  using State = TranscriptContentState;
  auto const metadata = json::decode<TranscriptMetadataDTO>(
      R"({"transcript_id":")" + id +
      R"(","created_on":"05/15/24 03:04:05 PM UTC","last_modified_on":"05/16/24 03:04:05 PM UTC"})");
  Transcript transcript = Transcript::from(metadata);
  EXPECT_EQ(transcript, (Transcript{metadata.id, metadata.createdOn}));
  EXPECT_EQ(transcript.textState, State(State::initial()));

  std::size_t const hash = std::hash<Transcript>()(transcript);
  transcript.setContent(TranscriptContent::from({.transcript = "said"}));
  EXPECT_EQ(transcript.textState, State(State::content{"said"}));
  EXPECT_EQ(transcript.analysisState, State(State::content{""}));
  EXPECT_NE(std::hash<Transcript>()(transcript), hash);
}

TEST(Records, ErrorStatesAreEqualByObject) {
  using State = TranscriptContentState;
  auto const failure = std::make_exception_ptr(std::runtime_error("No."));
  ErrorObject const object(failure);
  EXPECT_EQ(State(State::error{object}), State(State::error{object}));
  EXPECT_NE(State(State::error{object}), State(State::error{ErrorObject(failure)}));
  EXPECT_EQ(std::hash<State>()(State::error{object}), object.hash());
}

}  // namespace
}  // namespace vek
