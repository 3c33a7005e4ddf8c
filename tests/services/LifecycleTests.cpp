// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <thread>

#include "platform/Files.hpp"
#include "records/CustomerDTO.hpp"
#include "records/TranscriptContentDTO.hpp"
#include "support/BackendClient.hpp"
#include "support/DatabaseIntegrity.hpp"

namespace vek::test {

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

std::string textOf(BackendClient& client, std::string const& transcript) {
  return client.content(transcript).as<TranscriptContentDTO>().transcript.value();
}

std::string integrity(LocalServices const& services) {
  return databaseIntegrity(services.folder() / "backend.sqlite");
}

mode_t modeOf(std::filesystem::path const& path) {
  struct stat state{};
  return stat(path.c_str(), &state) == 0 ? state.st_mode & 0777 : 0;
}

TEST(Lifecycle, ItsMemoryIsNeverLeftInAFile) {
  LocalServices const services;
  std::ifstream limits("/proc/" + std::to_string(services.pid()) + "/limits");
  std::string line;
  while (!line.starts_with("Max core file size") && std::getline(limits, line)) continue;
  EXPECT_THAT(line, testing::MatchesRegex("Max core file size +[01] .*"));
}

TEST(Lifecycle, AGentleRestartKeepsDataSessionsAndCertificates) {
  LocalServices services;
  BackendClient client(services);
  auto const transcript = client.create();
  client.append(transcript, "kept");
  auto const authority = readFile(services.authority());

  EXPECT_EQ(services.stop(), 0);
  EXPECT_THAT(services.log(), HasSubstr("stopped"));
  services.start();

  EXPECT_EQ(readFile(services.authority()), authority);
  EXPECT_EQ(textOf(client, transcript), "kept");
  EXPECT_THAT(client.get("customers").as<std::vector<CustomerDTO>>(), SizeIs(12));
}

TEST(Lifecycle, WhatWasAcknowledgedBeforeACrashIsThereAfterIt) {
  LocalServices services;
  BackendClient client(services);
  auto const transcript = client.create();
  std::atomic<int> acknowledged = 0;
  std::jthread writer([&](std::stop_token stop) {
    BackendClient own(services);
    for (int i = 0; !stop.stop_requested(); ++i) {
      if (own.append(transcript, std::to_string(i) + ' ').status == 200) ++acknowledged;
    }
  });
  for (int round = 0; round < 3; ++round) {
    int const before = acknowledged;
    while (acknowledged < before + 20) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    services.kill();
    EXPECT_EQ(integrity(services), "ok");
    services.start();
  }
  writer.request_stop();
  writer.join();

  auto const text = textOf(client, transcript);
  auto const pieces = std::count(text.begin(), text.end(), ' ');
  // A piece may be stored whose acknowledgement the crash took, and no other.
  EXPECT_GE(pieces, acknowledged);
  EXPECT_LE(pieces, acknowledged + 3);
}

TEST(Lifecycle, AFullDiskIsAnErrorAndTheDataStayWhole) {
  LocalServices services;
  BackendClient client(services);
  auto const transcript = client.create();
  client.append(transcript, "before");
  rlimit const unlimited{RLIM_INFINITY, RLIM_INFINITY};
  rlimit const full{256 << 10, RLIM_INFINITY};
  ASSERT_EQ(prlimit(services.pid(), RLIMIT_FSIZE, &full, nullptr), 0);

  auto const refused = client.append(transcript, std::string(1 << 20, 'x'));
  EXPECT_EQ(refused.status, 507);
  EXPECT_EQ(refused.message(), "There is no room left to store this.");
  EXPECT_EQ(textOf(client, transcript), "before");
  EXPECT_THAT(services.log(), HasSubstr("error: POST /api/v1/agents/appendMeetingTranscript"));
  EXPECT_EQ(client.append(transcript, ", small").status, 200);

  ASSERT_EQ(prlimit(services.pid(), RLIMIT_FSIZE, &unlimited, nullptr), 0);
  EXPECT_EQ(client.append(transcript, ", after").status, 200);
  EXPECT_EQ(textOf(client, transcript), "before, small, after");
  EXPECT_EQ(integrity(services), "ok");
}

TEST(Lifecycle, TwoWritersAtOnceLoseNothing) {
  LocalServices services;
  constexpr int count = 60;
  std::string transcripts[2];
  BackendClient client(services);
  auto const shared = client.create();
  {
    std::vector<std::jthread> writers;
    for (auto& transcript : transcripts) {
      writers.emplace_back([&services, &transcript, &shared] {
        BackendClient own(services);
        transcript = own.create();
        for (int i = 0; i < count; ++i) {
          EXPECT_EQ(own.append(transcript, std::to_string(i) + ' ').status, 200);
          EXPECT_EQ(own.append(shared, "x").status, 200);
        }
      });
    }
  }
  std::string expected;
  for (int i = 0; i < count; ++i) expected += std::to_string(i) + ' ';
  for (auto const& transcript : transcripts) EXPECT_EQ(textOf(client, transcript), expected);
  EXPECT_EQ(textOf(client, shared), std::string(2 * count, 'x'));
}

TEST(Lifecycle, FilesAreForTheirOwnerAlone) {
  LocalServices services;
  EXPECT_EQ(modeOf(services.folder()), 0700);
  for (auto const& entry : std::filesystem::directory_iterator(services.folder())) {
    EXPECT_EQ(modeOf(entry.path()), 0600) << entry.path();
  }
}

TEST(Lifecycle, NothingSecretOrPrivateIsLogged) {
  LocalServices services;
  BackendClient client(services);
  client.append(client.create(), "a private matter");
  client.append("no identifier", "a private matter");
  services.stop();
  EXPECT_THAT(services.log(), Not(HasSubstr(services.token())));
  EXPECT_THAT(services.log(), Not(HasSubstr("private matter")));
}

TEST(Lifecycle, OnlyItsOwnAuthorityVouchesForItAndUnderLoopbackNamesAlone) {
  LocalServices services;
  LocalServices other;
  BackendClient wrong(services.url(), other.authority(), services.token());
  EXPECT_EQ(wrong.get("customers").status, 0);
  EXPECT_THAT(wrong.get("customers").failure, HasSubstr("SSL"));

  for (auto const* host : {"localhost", "127.0.0.1", "[::1]"}) {
    BackendClient client("https://" + std::string(host) + ":" + std::to_string(services.port()),
                         services.authority(), services.token());
    auto const answer = client.get("customers");
    EXPECT_EQ(answer.status, 200) << host << answer.failure;
  }
  // Another address of this machine's loopback: nothing listens there.
  BackendClient elsewhere("https://127.0.0.2:" + std::to_string(services.port()),
                          services.authority(), services.token());
  EXPECT_EQ(elsewhere.get("customers").status, 0);
}

TEST(Lifecycle, WhatKeepsItFromStartingIsSaid) {
  LocalServices services;
  TemporaryFolder folder;
  std::string const fresh = folder / "new";
  auto const port = std::to_string(services.port());

  auto const taken = runLocalServices({"--data", fresh, "--port", port});
  EXPECT_EQ(taken.status, 1);
  EXPECT_THAT(taken.output, HasSubstr("Port " + port + " is in use"));

  auto const held = runLocalServices({"--data", services.folder(), "--port", "0"});
  EXPECT_EQ(held.status, 1);
  EXPECT_THAT(held.output, HasSubstr("in use by another vek-services"));

  auto const noFolder = runLocalServices({"--data", "/proc/none", "--port", "0"});
  EXPECT_EQ(noFolder.status, 1);
  EXPECT_THAT(noFolder.output, HasSubstr("/proc/none can not be used"));

  services.stop();
  ASSERT_TRUE(std::filesystem::exists(services.folder() / "backend.sqlite"));
  replaceFile(services.folder() / "backend.sqlite", std::string(4096, '?'));
  auto const damaged = runLocalServices({"--data", services.folder(), "--port", "0"});
  EXPECT_EQ(damaged.status, 1);
  EXPECT_THAT(damaged.output, HasSubstr("not a database"));
}

TEST(Lifecycle, TheCommandLineIsChecked) {
  auto const help = runLocalServices({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.output, StartsWith("usage: vek-services --data FOLDER"));
  std::vector<std::vector<std::string>> const wrong = {
      {},
      {"--data"},
      {"--data="},
      {"--port", "0"},
      {"--data", "x", "--port", "65536"},
      {"--data", "x", "--port=-1"},
      {"--data", "x", "--help=y"},
      {"--data", "x", "--chat-completions", "file:///etc/passwd"},
      {"--data", "x", "more"}};
  for (auto const& arguments : wrong) {
    auto const run = runLocalServices(arguments);
    EXPECT_EQ(run.status, 2) << testing::PrintToString(arguments);
    EXPECT_THAT(run.output, HasSubstr("Try 'vek-services --help'."));
  }
  EXPECT_FALSE(std::filesystem::exists("x"));
}

TEST(Lifecycle, AConnectionThatSaysNothingKeepsNoOtherWaiting) {
  LocalServices services;
  std::vector<std::unique_ptr<BackendClient>> clients;
  for (int i = 0; i < 40; ++i) {
    clients.push_back(std::make_unique<BackendClient>(services));
    EXPECT_EQ(clients.back()->get("customers").status, 200);
  }
  // All forty stay connected; the end must not wait for them to leave.
  EXPECT_EQ(services.stop(), 0);
}

TEST(Lifecycle, ARequestThatNeverComesToItsEndDoesNotPutOffTheEnd) {
  LocalServices services;
  BackendClient stalled(services);
  stalled.sendRaw("POST /api/v1/agents/customers HTTP/1.1\r\nContent-Length: 100\r\n\r\n{");
  BackendClient client(services);
  EXPECT_EQ(client.get("customers").status, 200);
  auto const start = std::chrono::steady_clock::now();
  EXPECT_EQ(services.stop(), 0) << services.log();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

}  // namespace

}  // namespace vek::test
