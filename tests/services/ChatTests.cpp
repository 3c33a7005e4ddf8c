// SPDX-License-Identifier: MIT
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

#include "records/TranscriptContentDTO.hpp"
#include "support/BackendClient.hpp"
#include "support/Environment.hpp"

namespace vek::test {

namespace {

using testing::HasSubstr;

/// A chat-completions endpoint over plain HTTP that answers each request as it is told to.
class ChatEndpoint {
 public:
  ChatEndpoint() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, generic, length) != 0 || listen(listener_, 16) != 0 ||
        getsockname(listener_, generic, &length) != 0) {
      throw std::runtime_error("no endpoint");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
  }
  ChatEndpoint(ChatEndpoint const&) = delete;
  ChatEndpoint& operator=(ChatEndpoint const&) = delete;
  ~ChatEndpoint() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
  }

  [[nodiscard]] std::string url() const {
    return "http://127.0.0.1:" + std::to_string(port_) + "/v1/chat/completions";
  }
  void answer(int status, std::string body) {
    std::lock_guard lock(mutex_);
    status_ = status;
    body_ = std::move(body);
  }
  /// The last request as it came.
  std::string request() {
    std::lock_guard lock(mutex_);
    return request_;
  }

  std::atomic<int> count = 0;
  std::atomic<bool> isSilent = false;

 private:
  void serve() {
    while (true) {
      int const connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      if (connection < 0) return;
      auto request = read(connection);
      ++count;
      std::lock_guard lock(mutex_);
      request_ = std::move(request);
      if (isSilent) {
        silent_.push_back(connection);
        continue;
      }
      auto const reply =
          "HTTP/1.1 " + std::to_string(status_) +
          " X\r\nConnection: close\r\nContent-Length: " + std::to_string(body_.size()) +
          "\r\n\r\n" + body_;
      std::ignore = send(connection, reply.data(), reply.size(), MSG_NOSIGNAL);
      close(connection);
    }
  }

  /// Up to the end of the body, which is JSON and has no closing brace at the end of a block.
  static std::string read(int connection) {
    std::string text;
    std::array<char, 4096> block{};
    while (!text.ends_with("}]}")) {
      auto const size = recv(connection, block.data(), block.size(), 0);
      if (size <= 0) break;
      text.append(block.data(), static_cast<std::size_t>(size));
    }
    return text;
  }

  int listener_;
  int port_ = 0;
  std::mutex mutex_;
  int status_ = 200;
  std::string body_;
  std::string request_;
  std::vector<int> silent_;
  std::thread thread_;
};

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
