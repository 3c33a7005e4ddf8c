// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "records/TranscriptContentDTO.hpp"
#include "support/BackendClient.hpp"
#include "support/ChatEndpoint.hpp"
#include "support/Environment.hpp"

namespace vek::test {

namespace {

using testing::HasSubstr;

class Chat : public testing::Test {
 protected:
  EnvironmentVariable const key{"VEK_CHAT_KEY", "chat key"};
  ChatEndpoint endpoint;
  LocalServices services{{"--chat-completions", endpoint.url(), "--chat-model", "small"}};
  BackendClient client{services};
};

constexpr char good[] =
    R"({"id": 1, "choices": [{"message": {"role": "assistant", "content": "# Hi"}}]})";

TEST_F(Chat, MakesTheAnalysisOnceForEachText) {
  endpoint.answer(200, good);
  auto const transcript = client.create();
  EXPECT_EQ(client.content(transcript).as<TranscriptContentDTO>().analysis, "");
  EXPECT_EQ(endpoint.count, 0);

  client.append(transcript, "some words");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(client.content(transcript).as<TranscriptContentDTO>().analysis, "# Hi");
  }
  EXPECT_EQ(endpoint.count, 1);
  EXPECT_THAT(endpoint.request(), HasSubstr("Authorization: Bearer chat key\r\n"));
  EXPECT_THAT(endpoint.request(), HasSubstr(R"("model":"small")"));
  EXPECT_THAT(endpoint.request(), HasSubstr(R"({"role":"user","content":"some words"})"));

  client.append(transcript, "!");
  client.content(transcript);
  EXPECT_EQ(endpoint.count, 2);
}

TEST_F(Chat, AListOfManyGetsAllItsAnalysesAndEachIsMadeOnce) {
  endpoint.answer(200, good);
  constexpr int count = 20;
  std::vector<std::string> transcripts;
  for (int i = 0; i < count; ++i) client.append(transcripts.emplace_back(client.create()), "words");
  std::atomic<int> analysed = 0;
  std::vector<std::jthread> fetches;
  for (int i = 0; i < 2 * count; ++i) {
    fetches.emplace_back([this, id = transcripts[std::size_t(i / 2)], &analysed] {
      auto const content = BackendClient(services).content(id).as<TranscriptContentDTO>();
      if (content.analysis == "# Hi") ++analysed;
    });
  }
  fetches.clear();
  EXPECT_EQ(analysed, 2 * count);
  EXPECT_EQ(endpoint.count, count);
}

TEST_F(Chat, AFailureIsAnswered502AndLoggedOnceAndLeavesTheTextReadable) {
  auto const transcript = client.create();
  client.append(transcript, "words");
  struct Case {
    int status;
    char const* body;
    char const* message;
  };
  for (auto const& [status, body, message] :
       {Case{500, "{}", "answered 500"}, Case{200, "{}", "$.choices: missing"},
        Case{200, R"({"choices": []})", "no choice"}}) {
    endpoint.answer(status, body);
    auto const refused = client.post("getTranscriptAnalysis", R"({"transcript": "words"})");
    EXPECT_EQ(refused.status, 502);
    EXPECT_THAT(refused.message(), HasSubstr(message));
    auto const content = client.content(transcript).as<TranscriptContentDTO>();
    EXPECT_EQ(content.transcript, "words");
    EXPECT_EQ(content.analysis, std::nullopt);
  }
  // It befalls every text of a list.
  auto const log = services.log();
  auto const line = log.find("answered 500");
  EXPECT_NE(line, std::string::npos);
  EXPECT_EQ(log.find("answered 500", line + 1), std::string::npos);
}

TEST_F(Chat, ASlowAnswerKeepsNoOtherRequestWaitingNorTheEnd) {
  endpoint.isSilent = true;
  std::jthread const asking([this] {
    BackendClient own(services);
    own.post("getTranscriptAnalysis", R"({"transcript": "words"})");
  });
  while (endpoint.count == 0) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  EXPECT_EQ(client.get("customers").status, 200);
  EXPECT_EQ(services.stop(), 0) << services.log();
}

}  // namespace

}  // namespace vek::test
