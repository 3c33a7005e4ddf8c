// SPDX-License-Identifier: MIT
#include "TranscriptsLoad.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Clients/CredentialsClient.hpp"
#include "platform/Deployment.hpp"
#include "platform/HTTPClient.hpp"
#include "runtime/MainQueue.hpp"
#include "runtime/SyncWait.hpp"
#include "runtime/WhenAll.hpp"

namespace vek::benchmark {

namespace {

using Clock = std::chrono::steady_clock;
using List = TranscriptsListFeature::Action;

constexpr double megabyte = 1e6;

double seconds(Clock::duration duration) {
  return std::chrono::duration<double>(duration).count();
}

/// Milliseconds that this thread has worked, on however busy a machine.
double threadTime() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// A value of /proc/self/status, which counts in KiB, in MB.
double memory(std::string_view name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return std::stod(line.substr(name.size() + 1)) * 1024 / megabyte;
  }
  return 0;
}

constexpr std::string_view insertTranscripts = R"(
  PRAGMA busy_timeout = 10000;
  BEGIN;
  CREATE TEMP VIEW id AS SELECT lower(hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' ||
    substr(hex(randomblob(2)), 2) || '-a' || substr(hex(randomblob(2)), 2) || '-' ||
    hex(randomblob(6))) AS text;
  WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {0})
  INSERT INTO transcripts (user, id, insight, status, created, modified)
    SELECT (SELECT min(key) FROM users), (SELECT text FROM id WHERE i), (SELECT text FROM id WHERE i),
           'TRANSCRIPTION_COMPLETE', 1700000000 + i * 60, 1700000000 + i * 60 FROM n;
  WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 12)
  INSERT INTO pieces (transcript, text)
    SELECT key, printf('In call %d we spoke for %d minutes about the offer of %d euros. ', key, i,
                       key * i) ||
      'You wanted the delivery before the end of March and asked who signs the contract. '
    FROM transcripts, n WHERE NOT EXISTS (SELECT 1 FROM pieces WHERE transcript = transcripts.key);
  COMMIT;
)";

std::size_t textSize(TranscriptContentState const& state) {
  auto const* content = state.as<TranscriptContentState::content>();
  return content ? content->text.string().size() : 0;
}

}  // namespace

ManyTranscripts::ManyTranscripts() {
  auto values = Deployment::builtIn();
  values.backendURL = services_.url();
  values.trustedAuthority = services_.authority();
  values.authConfiguration = services_.folder() / "Auth0.plist";
  setDeployment(values);
}

void ManyTranscripts::add(int count) const {
  auto const database = (services_.folder() / "backend.sqlite").string();
  auto const script = database + ".rows";
  std::ofstream(script) << fmt::format(fmt::runtime(insertTranscripts), count);
  auto const command = fmt::format("sqlite3 -bail {} '.read {}' >/dev/null", database, script);
  if (std::system(command.c_str()) != 0) throw std::runtime_error("The rows were not inserted.");
}

double ManyTranscripts::fetchRaw(AppFeature::State const& loaded) const {
  auto const http = HTTPClient::make({.trustedAuthority = services_.authority()});
  auto const& client = DependencyValues::current()[credentialsClient];
  auto const token = syncWait(client->credentials()).accessToken();
  auto const send = [&](std::string method, std::string const& path,
                        std::optional<std::string> body) {
    return http.send(
        {.method = std::move(method),
         .url = services_.url() + "/api/v1/agents/" + path,
         .headers = {{"Authorization", "Bearer " + token}, {"Content-Type", "application/json"}},
         .body = std::move(body)});
  };
  auto const begin = Clock::now();
  syncWait(whenAll(send("GET", "customers", {}), send("GET", "getAllTranscriptsMetadata", {})));
  std::vector<Task<HTTPResponse>> tasks;
  for (auto const& transcript : loaded.transcripts.transcripts) {
    tasks.push_back(send("POST", "getTranscriptContent",
                         "{\"transcript_id\":\"" + transcript.id.lowerCaseText() + "\"}"));
  }
  for (auto const& response : syncWait(whenAll(std::move(tasks)))) {
    if (response.status != 200) throw std::runtime_error("A body could not be fetched.");
  }
  return seconds(Clock::now() - begin);
}

Load loadList(AppStore& store) {
  Load load;
  double const idle = memory("VmRSS");
  std::ofstream("/proc/self/clear_refs") << 5;
  // As a view does, which compares the next state with it.
  AppFeature::State shown;
  auto const view =
      store.publisher().subscribe({[&](AppFeature::State const& state) { shown = state; }, [] {}});
  auto const begin = Clock::now();
  auto const task = store.send(AppFeature::Action::transcripts{List::setUp{}});
  while (!task.tasks()->isDone()) {
    double const worked = threadTime();
    auto const started = Clock::now();
    if (MainQueue::shared().runPending(1) == 0) {
      std::this_thread::sleep_for(std::chrono::microseconds(100));
      continue;
    }
    load.longestBusy = std::max(load.longestBusy, threadTime() - worked);
    load.longestWait = std::max(load.longestWait, seconds(Clock::now() - started) * 1e3);
  }
  load.seconds = seconds(Clock::now() - begin);
  load.growth = memory("VmHWM") - idle;
  auto const& list = store.state().transcripts;
  if (list.error) throw std::runtime_error(list.error->localizedDescription());
  for (auto const& transcript : list.transcripts) {
    auto const size = textSize(transcript.textState) + textSize(transcript.analysisState);
    load.texts += static_cast<double>(size) / megabyte;
    load.settled += transcript.textState.as<TranscriptContentState::content>() ? 1 : 0;
  }
  return load;
}

double openTranscripts(AppStore& store) {
  auto const send = [&](List action) {
    store.send(AppFeature::Action::transcripts{std::move(action)});
  };
  double longest = 0;
  for (std::size_t i = 0; i < 100; ++i) {
    auto const& list = store.state().transcripts.transcripts;
    auto const transcript = list[i * list.size() / 100];
    double const begin = threadTime();
    send(List::openTrasnscript{transcript});
    bool const isOpen = store.state().transcripts.openedTranscripts.contains(transcript.id);
    longest = std::max(longest, threadTime() - begin);
    if (!isOpen) throw std::runtime_error("A transcript was not opened.");
  }
  return longest;
}

}  // namespace vek::benchmark
