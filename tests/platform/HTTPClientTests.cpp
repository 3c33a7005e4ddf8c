// SPDX-License-Identifier: MIT
#include "platform/HTTPClient.hpp"

#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/Files.hpp"
#include "platform/HTTPError.hpp"
#include "runtime/SyncWait.hpp"
#include "runtime/ThreadPool.hpp"
#include "runtime/WhenAll.hpp"
#include "support/Environment.hpp"
#include "support/HTTPSTestServer.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;
using test::HTTPSTestServer;
using test::ReceivedRequest;
using test::ScriptedAnswer;
using test::TestAuthority;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TestAuthority const& authority() {
  static auto const* const instance = new TestAuthority;
  return *instance;
}

HTTPClient trustingClient() {
  return HTTPClient::make({.trustedAuthority = authority().authority()});
}

/// How sending `request` fails.
std::optional<HTTPError::Code> failure(HTTPClient const& client, HTTPRequest request) {
  try {
    syncWait(client.send(std::move(request)));
    return std::nullopt;
  } catch (HTTPError const& error) {
    EXPECT_THAT(error.what(), testing::MatchesRegex("[A-Z].*\\.")) << error.what();
    return error.code();
  }
}

TEST(HTTPClient, SendsWhatItIsToldAndGivesTheWholeAnswer) {
  HTTPSTestServer const server(authority(), [](ReceivedRequest const& request) {
    return ScriptedAnswer::of(404, request.body, "X-Name:  value \r\n");
  });
  auto const client = trustingClient();
  std::string const body(300'000, 'x');
  auto const response = syncWait(client.send({.method = "POST",
                                              .url = server.url() + "/path?a=b",
                                              .headers = {{"Content-Type", "text/plain"}},
                                              .body = body}));
  EXPECT_EQ(response.status, 404);
  EXPECT_EQ(response.body, body);
  EXPECT_EQ(response.header("x-name"), "value");
  EXPECT_EQ(response.url, server.url() + "/path?a=b");

  syncWait(client.send({.method = "DELETE", .url = server.url() + "/list?"}));
  syncWait(client.send({.method = "POST", .url = server.url() + "/empty"}));
  auto const received = server.received();
  EXPECT_EQ(received[0].line, "POST /path?a=b");
  EXPECT_THAT(received[0].headers,
              AllOf(HasSubstr("Content-Type: text/plain\r\n"), Not(HasSubstr("Expect:"))));
  EXPECT_EQ(received[1].line, "DELETE /list?");
  EXPECT_THAT(received[2].headers,
              AllOf(HasSubstr("Content-Length: 0\r\n"), Not(HasSubstr("Content-Type"))));
  EXPECT_EQ(server.mostConnections(), 1);
}

TEST(HTTPClient, TrustsTheAuthorityAndNobodyElse) {
  HTTPSTestServer const server(authority(), [](auto&) { return ScriptedAnswer::of(200, ""); });
  EXPECT_EQ(failure(trustingClient(), {.url = server.url()}), std::nullopt);

  TestAuthority const other;
  for (auto const& file : {std::filesystem::path(), other.authority(),
                           std::filesystem::path("/nonexistent"), authority().key()}) {
    EXPECT_EQ(failure(HTTPClient::make({.trustedAuthority = file}), {.url = server.url()}),
              HTTPError::Code::untrustedServer)
        << file;
  }
  EXPECT_EQ(failure(trustingClient(), {.url = server.urlByAddress()}),
            HTTPError::Code::untrustedServer)
      << "the certificate has another name";
}

TEST(HTTPClient, TrustsTheSystemsAuthorities) {
  test::EnvironmentVariable const system("SSL_CERT_FILE", authority().authority());
  TestAuthority const other;
  HTTPSTestServer const server(authority(), [](auto&) { return ScriptedAnswer::of(200, ""); });
  for (auto const& file : {std::filesystem::path(), other.authority()}) {
    auto const client = HTTPClient::make({.trustedAuthority = file});
    EXPECT_EQ(failure(client, {.url = server.url()}), std::nullopt) << file;
  }
}

TEST(HTTPClient, FindsAnAuthorityThatAppearsLater) {
  test::TemporaryFolder const folder;
  HTTPSTestServer const server(authority(), [](auto&) { return ScriptedAnswer::of(200, ""); });
  auto const client = HTTPClient::make({.trustedAuthority = folder / "authority.pem"});
  EXPECT_EQ(failure(client, {.url = server.url()}), HTTPError::Code::untrustedServer);
  replaceFile(folder / "authority.pem", *readFile(authority().authority()));
  EXPECT_EQ(failure(client, {.url = server.url()}), std::nullopt);
}

TEST(HTTPClient, SaysWhatWentWrong) {
  struct Case {
    std::string name;
    ScriptedAnswer answer;
    HTTPError::Code code;
  };
  using enum HTTPError::Code;
  for (auto const& [name, answer, code] : {
           Case{"cut short in the body",
                ScriptedAnswer::cutShort("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf"),
                connectionLost},
           Case{"cut short in a chunk",
                ScriptedAnswer::cutShort(
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nha"),
                connectionLost},
           Case{"no answer", ScriptedAnswer::cutShort(""), connectionLost},
           Case{"never answered", ScriptedAnswer::never(), timedOut},
           Case{"no HTTP", ScriptedAnswer::cutShort("220 mail ready\r\n"), notHTTP},
           Case{"too large", ScriptedAnswer::of(200, std::string(2000, 'x')), bodyTooLarge},
       }) {
    HTTPSTestServer const server(authority(), [&](auto&) { return answer; });
    auto const client =
        HTTPClient::make({.trustedAuthority = authority().authority(), .largestBody = 1000});
    auto const timeout = code == timedOut ? 500ms : 30s;
    EXPECT_EQ(failure(client, {.url = server.url(), .timeout = timeout}), code) << name;
  }
  auto const client = trustingClient();
  EXPECT_EQ(failure(client, {.url = "https://localhost:1"}), cannotConnect);
  EXPECT_EQ(failure(client, {.url = "https://name.invalid"}), cannotFindHost);
  EXPECT_EQ(failure(client, {.url = "file:///etc/passwd"}), notHTTP);
  EXPECT_EQ(failure(client, {.url = "https://localhost:1", .headers = {{"A", "b\r\nC: d"}}}),
            other);
}

TEST(HTTPClient, DoesNotFollowRedirects) {
  HTTPSTestServer const server(
      authority(), [](auto&) { return ScriptedAnswer::of(302, "", "Location: /elsewhere\r\n"); });
  EXPECT_EQ(syncWait(trustingClient().send({.url = server.url()})).status, 302);
  EXPECT_EQ(server.received().size(), 1U);
}

TEST(HTTPClient, TimeOfARequestThatWaitsDoesNotRun) {
  HTTPSTestServer const server(authority(), [](auto&) {
    auto answer = ScriptedAnswer::of(200, "{}");
    answer.delay = 150ms;
    return answer;
  });
  auto const client = trustingClient();
  auto const sendAtOnce = [&](int count, std::chrono::milliseconds timeout) {
    std::vector<Task<HTTPResponse>> tasks;
    for (int i = 0; i < count; ++i) {
      tasks.push_back(client.send({.url = server.url(), .timeout = timeout}));
    }
    return syncWait(whenAll(std::move(tasks))).size();
  };
  sendAtOnce(6, 30s);  // opens the connections
  // 60 requests over 6 connections take 1,500 ms in all, and each no more than a tenth of that.
  EXPECT_EQ(sendAtOnce(60, 1200ms), 60U);
  EXPECT_LE(server.mostConnections(), 6);
}

TEST(HTTPClient, ManyAtATimeFromManyThreads) {
  HTTPSTestServer const server(authority(), [](ReceivedRequest const& request) {
    return ScriptedAnswer::of(200, request.body);
  });
  auto const client = trustingClient();
  std::vector<Task<HTTPResponse>> tasks;
  for (int i = 0; i < 1000; ++i) {
    tasks.push_back(
        on(ThreadPool::shared(),
           client.send({.method = "POST", .url = server.url(), .body = std::to_string(i)})));
  }
  auto const responses = syncWait(whenAll(std::move(tasks)));
  for (std::size_t i = 0; i < responses.size(); ++i) {
    ASSERT_EQ(responses[i].body, std::to_string(i));
  }
}

TEST(HTTPClient, StoppingATaskEndsItsExchange) {
  HTTPSTestServer const server(authority(), [](ReceivedRequest const& request) {
    return request.line == "GET /ok" ? ScriptedAnswer::of(200, "") : ScriptedAnswer::never();
  });
  auto const client = trustingClient();
  auto const expectCancelled = [](Task<HTTPResponse> task) -> Task<> {
    auto const outcome = co_await attempt(std::move(task));
    EXPECT_THROW((void)outcome.value(), CancellationError);
  };
  std::vector<TaskHandle> handles;
  for (int i = 0; i < 10; ++i) {  // six on connections and four that wait for one
    handles.push_back(spawn(ThreadPool::shared(),
                            expectCancelled(client.send({.url = server.url() + "/never"}))));
  }
  while (server.received().size() < 6) std::this_thread::sleep_for(5ms);
  for (auto const& handle : handles) handle.cancel();
  for (auto const& handle : handles) syncWait(handle.wait());
  while (server.abandoned() < 6) std::this_thread::sleep_for(5ms);
  EXPECT_EQ(syncWait(client.send({.url = server.url() + "/ok"})).status, 200);
  EXPECT_EQ(server.received().size(), 7U);
}

}  // namespace
}  // namespace vek
