// SPDX-License-Identifier: MIT
// What vekctl makes of a backend that fails.
#include <csignal>
#include <fstream>
#include <thread>

#include "app/ProgramTests.hpp"
#include "support/HTTPSTestServer.hpp"

namespace vek::test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

class BackendFaults : public ProgramTests {
 protected:
  [[nodiscard]] std::string endpoint(std::string const& name) const {
    return surroundings.deployment.at("backendURL") + "/api/v1/agents/" + name;
  }
  /// What a recording says that can't begin.
  [[nodiscard]] std::string failedRecording() const {
    auto const result = run({"record", "--from", speechFile("hts-slt-s03")});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    return result.messages;
  }
};

TEST_F(BackendFaults, ServicesThatDoNotRun) {
  services.stop();
  EXPECT_THAT(failedRecording(),
              MatchesRegex("error: Could not connect to the server \\([^\n]*\\)\\.\n"));
  EXPECT_THAT(run({"transcripts"}).messages, HasSubstr("error: Could not connect to the server"));
}

TEST_F(BackendFaults, AnAuthorityThatIsNotTrusted) {
  surroundings.deployment["trustedAuthority"] = "";
  EXPECT_THAT(failedRecording(), HasSubstr("error: The server's certificate is not trusted"));
}

TEST_F(BackendFaults, CredentialsThatAreRefusedOrMissing) {
  LocalServices const others;
  std::filesystem::remove_all(surroundings.dataHome());
  EXPECT_EQ(failedRecording(), "error: No credentials were found in the store.\n");
  storeCredentials(others, surroundings.dataHome());
  auto const refused = failedRecording();
  EXPECT_THAT(refused, HasSubstr("error: Unexpected HTTP response from " +
                                 endpoint("createMeetingTranscript") + ". Code: 401. "));
  EXPECT_THAT(refused, Not(HasSubstr(others.token())));
}

TEST_F(BackendFaults, AnswersThatMakeNoSense) {
  TestAuthority const authority;
  HTTPSTestServer server(authority, [](auto&) { return ScriptedAnswer::of(200, ""); });
  surroundings.deployment["backendURL"] = server.url();
  surroundings.deployment["trustedAuthority"] = authority.authority().string();
  auto const from = " from " + endpoint("createMeetingTranscript");
  struct Case {
    ScriptedAnswer answer;
    std::string message;
  };
  for (auto const& [answer, message] : std::vector<Case>{
           {ScriptedAnswer::of(500, ""),
            "Unexpected HTTP response" + from + ". Code: 500. Additional info: \n"},
           {ScriptedAnswer::of(500, R"({"message":"It rains in."})"),
            "Unexpected HTTP response" + from + ". Code: 500. Additional info: It rains in.\n"},
           {ScriptedAnswer::of(500, "<h1>Oh</h1>"),
            "Unexpected HTTP response" + from + ". Code: 500. Additional info: \n"},
           {ScriptedAnswer::of(200, "<h1>Welcome</h1>"),
            "JSON decoding error" + from + ". Additional info: "},
           {ScriptedAnswer::of(200, "{}"), "JSON decoding error" + from + ". Additional info: "},
           {ScriptedAnswer::cutShort("HTTP/1.1 200 OK\r\nContent-Length: 90\r\n\r\n{\"transcript"),
            "The connection to the server was lost"},
           {ScriptedAnswer::cutShort("no HTTP at all\r\n\r\n"), "Invalid response" + from}}) {
    server.answerWith(answer);
    EXPECT_THAT(failedRecording(), testing::StartsWith("error: " + message));
  }
}

TEST_F(BackendFaults, APieceThatIsRefusedIsTold) {
  TestAuthority const authority;
  HTTPSTestServer const server(authority, [](ReceivedRequest const& request) {
    if (request.line.find("create") == std::string::npos) return ScriptedAnswer::of(500, "");
    return ScriptedAnswer::of(200, R"({"transcript_id":"41bcf776-aa28-4ccf-8362-93fa802f7f6c",)"
                                   R"("status":"IN_PROGRESS"})");
  });
  surroundings.deployment["backendURL"] = server.url();
  surroundings.deployment["trustedAuthority"] = authority.authority().string();
  auto const result = run({"record", "--from", speechFile("hts-slt-s03")});
  EXPECT_EQ(result.status, 1);
  expectSaid("hts-slt-s03", Recorded(result.output).text);
  EXPECT_EQ(result.messages, "Recording. Ctrl-C stops.\nerror: Unexpected HTTP response from " +
                                 endpoint("appendMeetingTranscript") +
                                 ". Code: 500. Additional info: \nerror: Not all of the text was "
                                 "stored.\n");
}

TEST_F(BackendFaults, AServerThatIsSilentIsLeftByASecondCtrlC) {
  TestAuthority const authority;
  HTTPSTestServer const server(authority, [](auto&) { return ScriptedAnswer::never(); });
  surroundings.deployment["backendURL"] = server.url();
  surroundings.deployment["trustedAuthority"] = authority.authority().string();
  VekctlRun recording(surroundings, {"record"});
  while (server.received().empty()) std::this_thread::yield();
  recording.signal(SIGINT);
  recording.signal(SIGTERM);
  EXPECT_EQ(recording.wait(), 1);
  EXPECT_EQ(recording.output(), "");
}

TEST_F(BackendFaults, ADeploymentFileThatIsMissingOrBad) {
  auto const file = (surroundings.folder / "other.json").string();
  surroundings.environment["VEK_DEPLOYMENT_FILE"] = file;
  auto const message = [&](std::string const& reason) {
    return "error: The deployment file " + file + " cannot be used: " + reason;
  };
  EXPECT_THAT(failedRecording(), message("there is no such file") + "\n");
  struct Case {
    std::string content;
    std::string reason;
  };
  for (auto const& [content, reason] :
       std::vector<Case>{{"backendURL = x", "it is not JSON"},
                         {"[]", "it holds no JSON object\n"},
                         {R"({"backend":"x"})", "it has the unknown key \"backend\"\n"}}) {
    std::ofstream(file) << content;
    EXPECT_THAT(failedRecording(), testing::StartsWith(message(reason)));
  }
}

}  // namespace
}  // namespace vek::test
