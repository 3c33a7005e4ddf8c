// SPDX-License-Identifier: MIT
#include "Clients/APIClient.hpp"

#include "Clients/APIClientError.hpp"
#include "Clients/APIClientImpl.hpp"
#include "identity/CredentialsManagerError.hpp"
#include "platform/HTTPError.hpp"
#include "runtime/SyncWait.hpp"
#include "support/HTTPSTestServer.hpp"

namespace vek {
namespace {

using test::HTTPSTestServer;
using test::ReceivedRequest;
using test::ScriptedAnswer;
using test::TestAuthority;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

std::string const lower = "0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9";
std::string const upper = "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9";
UUID const id = *UUID::parse(lower);

Task<Credentials> credentialsWith(std::string token) {
  co_return Credentials({.accessToken = std::move(token), .tokenType = "Bearer", .expiresIn = {}});
}

CredentialsClient knownCredentials() {
  return {.storeCredentials = {},
          .credentials = [] { return credentialsWith("the-token"); },
          .logOut = {}};
}

APIClient makeClient(std::string const& baseURL, HTTPClient http,
                     CredentialsClient credentials = knownCredentials()) {
  return withDependencies(
      [&](DependencyValues& values) { values.set(credentialsClient, std::move(credentials)); },
      [&] {
        return APIClientImpl::client(
            std::make_shared<APIClientImpl const>(baseURL, std::move(http)));
      });
}

/// The description of the APIClientError that `task` ends with.
template <class Value>
std::string descriptionOf(Task<Value> task) {
  try {
    syncWait(std::move(task));
    return "no error";
  } catch (APIClientError const& error) {
    return error.what();
  }
}

/// A real server that gives every request the answer of the moment.
class APIClientTests : public testing::Test {
 protected:
  std::string at(std::string_view path) const {
    return server_.url() + "/api/v1/agents/" + std::string(path);
  }

  TestAuthority authority_;
  HTTPSTestServer server_{authority_, nullptr};
  APIClient client_ = makeClient(server_.url() + "/api/v1/agents/",
                                 HTTPClient::make({.trustedAuthority = authority_.authority()}));
};

TEST_F(APIClientTests, EachOperationSpeaksItsEndpoint) {
  std::string const created = R"({"transcript_id":")" + lower + R"(","status":"STARTED"})";
  struct Case {
    std::function<void()> call;
    std::string answer;
    std::string line;
    std::string body = {};
  };
  auto const& client = client_;
  auto const none = std::nullopt;
  for (auto const& [call, answer, line, body] : {
           Case{[&] { EXPECT_EQ(syncWait(client.getTranscriptAnalysis("a \"b\"\n")), "# Text"); },
                R"("# Text")", "POST getTranscriptAnalysis", R"({"transcript":"a \"b\"\n"})"},
           Case{[&] { EXPECT_TRUE(syncWait(client.getCustomers()).empty()); }, "[]",
                "GET customers"},
           Case{[&] { EXPECT_TRUE(syncWait(client.getPreMeetingsBriefs(none)).empty()); }, "[]",
                "GET preMeetingsBriefs"},
           Case{[&] { EXPECT_TRUE(syncWait(client.getPreMeetingsBriefs(id)).empty()); }, "[]",
                "GET preMeetingsBriefs?customer_id=" + upper},
           Case{[&] { EXPECT_EQ(syncWait(client.createTranscript(none, none)).id, id); }, created,
                "POST createMeetingTranscript", "{}"},
           Case{[&] { EXPECT_EQ(syncWait(client.createTranscript(id, id)).id, id); }, created,
                "POST createMeetingTranscript",
                R"({"customer_id":")" + lower + R"(","insight_id":")" + lower + "\"}"},
           Case{[&] { syncWait(client.updateTranscript("text", id)); }, "not read",
                "POST appendMeetingTranscript",
                R"({"transcript":"text","transcript_id":")" + lower + "\"}"},
           Case{[&] { EXPECT_FALSE(syncWait(client.completeTranscript(id, id)).status); }, "{}",
                "POST completeMeetingTranscript",
                R"({"customer_id":")" + lower + R"(","transcript_id":")" + lower + "\"}"},
           Case{[&] { EXPECT_TRUE(syncWait(client.getAllTranscripts(none, none)).empty()); }, "[]",
                "GET transcripts?"},
           Case{[&] { EXPECT_TRUE(syncWait(client.getAllTranscripts(id, id)).empty()); }, "[]",
                "GET transcripts?customer_id=" + upper + "&insight_id=" + upper},
           Case{[&] { EXPECT_EQ(syncWait(client.deleteTranscript(id)).id, id); }, created,
                "DELETE transcripts/" + upper},
           Case{[&] { EXPECT_TRUE(syncWait(client.getAllTranscriptsMetadata()).empty()); }, "[]",
                "GET getAllTranscriptsMetadata"},
           Case{[&] { EXPECT_EQ(syncWait(client.getTranscriptContent(id)).transcript, "t"); },
                R"({"transcript":"t"})", "POST getTranscriptContent",
                R"({"transcript_id":")" + lower + "\"}"},
       }) {
    server_.answerWith(ScriptedAnswer::of(200, answer));
    call();
    ReceivedRequest const request = server_.received().back();
    std::string expected = line;
    EXPECT_EQ(request.line, expected.insert(expected.find(' ') + 1, "/api/v1/agents/"));
    EXPECT_EQ(request.body, body);
    EXPECT_THAT(request.headers, HasSubstr("Authorization: Bearer the-token\r\n"));
    if (body.empty()) {
      EXPECT_THAT(request.headers, Not(HasSubstr("Content-Type")));
    } else {
      EXPECT_THAT(request.headers, HasSubstr("Content-Type: application/json\r\n"));
    }
  }
}

TEST_F(APIClientTests, RefusalsCarryTheirReason) {
  struct Case {
    int status;
    std::string body;
    std::string info;
  };
  std::string const begin = "Unexpected HTTP response from " + at("customers") + ". Code: ";
  for (auto const& [status, body, info] :
       {Case{500, R"({"message":"Out of \"order\"."})", "Out of \"order\"."},
        Case{500, "<html>", ""}, Case{401, R"({"message":7})", ""}, Case{300, "", ""}}) {
    server_.answerWith(ScriptedAnswer::of(status, body));
    EXPECT_EQ(descriptionOf(client_.getCustomers()),
              begin + std::to_string(status) + ". Additional info: " + info);
  }
}

TEST_F(APIClientTests, AnswersThatCannotBeDecoded) {
  std::string const begin =
      "JSON decoding error from " + at("transcripts?") + ". Additional info: ";
  server_.answerWith(ScriptedAnswer::of(204, ""));
  EXPECT_THAT(descriptionOf(client_.getAllTranscripts({}, {})), testing::StartsWith(begin + "$: "));
  syncWait(client_.updateTranscript("text", id));
  server_.answerWith(ScriptedAnswer::of(200, R"([{"transcript_id":"1"}])"));
  EXPECT_EQ(descriptionOf(client_.getAllTranscripts({}, {})),
            begin + "$[0].transcript_id: expected an identifier, got another text");
}

TEST_F(APIClientTests, TransportFailuresPass) {
  server_.answerWith(ScriptedAnswer::cutShort("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n["));
  EXPECT_THROW(syncWait(client_.getCustomers()), HTTPError);
  server_.answerWith(ScriptedAnswer::cutShort("220 mail ready\r\n"));
  EXPECT_EQ(descriptionOf(client_.getCustomers()),
            "Invalid response from " + at("customers") + ". Additional info: ");
}

/// An HTTP client that answers without a server and keeps what it was given.
struct FakeHTTP {
  int status = 200;
  std::vector<HTTPRequest> requests = {};

  static Task<HTTPResponse> answer(FakeHTTP* fake, HTTPRequest request) {
    fake->requests.push_back(request);
    co_return HTTPResponse{.status = fake->status, .body = "[]", .url = request.url};
  }
  HTTPClient client() {
    return {[this](HTTPRequest request) { return answer(this, std::move(request)); }};
  }
};

TEST(APIClient, StatusesThatNoServerSendsLast) {
  FakeHTTP http{.status = 199};
  EXPECT_THAT(descriptionOf(makeClient("https://host/", http.client()).getCustomers()),
              HasSubstr("Code: 199. "));
  http.status = 299;
  EXPECT_TRUE(syncWait(makeClient("https://host/", http.client()).getCustomers()).empty());
  ASSERT_FALSE(http.requests.empty());
  EXPECT_EQ(http.requests[0].timeout, std::chrono::seconds(60));
}

TEST(APIClient, NothingIsSentWithoutCredentialsOrURL) {
  FakeHTTP http;
  CredentialsClient none = knownCredentials();
  none.credentials = []() -> Task<Credentials> {
    throw CredentialsManagerError(CredentialsManagerError::Code::noCredentials);
    co_return co_await credentialsWith("");
  };
  EXPECT_THROW(syncWait(makeClient("https://host/", http.client(), none).getCustomers()),
               CredentialsManagerError);
  EXPECT_EQ(descriptionOf(makeClient("https://a host/", http.client()).getCustomers()),
            "Invalid URL from https://a host/customers. Additional info: ");
  EXPECT_TRUE(http.requests.empty());
}

TEST(APIClient, TokenStandsInTheDebugLogOnly) {
  FakeHTTP http{.status = 500};
  auto const client = makeClient("https://host/", http.client());
  std::vector<std::string> lines;
  LogSink const sink = [&](LogLevel, std::string_view category, std::string_view message) {
    lines.push_back(std::string(category) + ": " + std::string(message));
  };
  {
    LogRedirection const redirection(sink, LogLevel::notice);
    EXPECT_THAT(descriptionOf(client.getCustomers()), Not(HasSubstr("the-token")));
  }
  EXPECT_TRUE(lines.empty());
  LogRedirection const redirection(sink, LogLevel::debug);
  (void)descriptionOf(client.getTranscriptContent(id));
  (void)descriptionOf(client.getCustomers());
  EXPECT_THAT(lines, testing::ElementsAre(
                         "APIClient: curl \"https://host/getTranscriptContent\" \\\n\t-X POST"
                         " \\\n\t-H 'Content-Type: application/json'"
                         " \\\n\t-H 'Authorization: Bearer the-token'"
                         " \\\n\t-d '{\"transcript_id\":\"" +
                             lower + "\"}'",
                         "APIClient: curl \"https://host/customers\""
                         " \\\n\t-H 'Authorization: Bearer the-token'"));
}

}  // namespace
}  // namespace vek
