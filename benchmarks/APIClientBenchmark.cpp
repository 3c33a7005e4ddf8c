// SPDX-License-Identifier: MIT
// Fetches the contents of 10,000 transcripts, all asked for at once, from the local services, and
// lets h2load send the same requests over the same number of connections in turn with it.
//
//     APIClientBenchmark [REQUESTS]     exit status 1 when a bound is not kept

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "Clients/APIClient.hpp"
#include "platform/Deployment.hpp"
#include "platform/Files.hpp"
#include "runtime/SyncWait.hpp"
#include "runtime/WhenAll.hpp"
#include "support/LocalServices.hpp"
#include "support/StoredCredentials.hpp"

namespace vek {
namespace {

constexpr int rounds = 5;
constexpr int connections = 6;
constexpr double largestRatio = 1.5;
constexpr double largestGrowth = 64;

/// A value of /proc/self/status in MiB.
double memory(std::string_view name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return std::stod(line.substr(name.size() + 1)) / 1024;
  }
  return 0;
}

void forgetPeak() {
  std::ofstream("/proc/self/clear_refs") << 5;
}

std::string output(std::string const& command) {
  std::string text;
  FILE* const pipe = popen(command.c_str(), "r");
  if (!pipe) throw std::runtime_error("The shell cannot be started.");
  std::array<char, 4096> block{};
  while (std::size_t const count = fread(block.data(), 1, block.size(), pipe)) {
    text.append(block.data(), count);
  }
  pclose(pipe);
  return text;
}

/// Seconds that h2load needs.
double runPeer(test::LocalServices const& services, std::string const& body, int requests) {
  std::string const text =
      output(fmt::format("h2load --h1 -n {} -c {} -t 1 -d {} -H 'Content-Type: application/json' "
                         "-H 'Authorization: Bearer {}' {}/api/v1/agents/getTranscriptContent 2>&1",
                         requests, connections, body, services.token(), services.url()));
  bool const allSucceeded = text.find(fmt::format("status codes: {} 2xx", requests)) != text.npos;
  auto const at = text.find("finished in ");
  if (!allSucceeded || at == text.npos) throw std::runtime_error("h2load failed:\n" + text);
  std::string const figure = text.substr(at + 12, text.find(',', at) - at - 12);
  return std::stod(figure) * (figure.ends_with("ms") ? 0.001 : 1);
}

/// Seconds that the client needs. Throws what the first request fails with.
double runClient(APIClient const& client, UUID transcript, int requests) {
  auto const begin = std::chrono::steady_clock::now();
  std::vector<Task<TranscriptContentDTO>> tasks;
  tasks.reserve(static_cast<std::size_t>(requests));
  for (int i = 0; i < requests; ++i) tasks.push_back(client.getTranscriptContent(transcript));
  syncWait(whenAll(std::move(tasks)));
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

int run(int requests) {
  test::LocalServices const services;
  test::SignedInProcess const user(services);
  setDeployment({.backendURL = services.url(),
                 .authConfiguration = services.folder() / "Auth0.plist",
                 .trustedAuthority = services.authority(),
                 .modelsFolder = {}});
  auto const client = DependencyValues::current()[apiClient];
  UUID const transcript = syncWait(client->createTranscript({}, {})).id;
  syncWait(client->updateTranscript("We agreed to send the offer on Monday.", transcript));
  std::string const bodyFile = services.folder() / "benchmark-body";
  replaceFile(bodyFile, "{\"transcript_id\":\"" + transcript.lowerCaseText() + "\"}");

  double const idle = memory("VmRSS");
  forgetPeak();
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    double const peer = runPeer(services, bodyFile, requests);
    double const ours = runClient(*client, transcript, requests);
    ratios.push_back(ours / peer);
    fmt::print("{} requests: ours {:.3f} s, h2load {:.3f} s, ratio {:.2f}\n", requests, ours, peer,
               ours / peer);
  }
  double const growth = memory("VmHWM") - idle;
  fmt::print("median ratio {:.2f} (at most {}), memory above idle {:.1f} MiB (at most {})\n",
             median(ratios), largestRatio, growth, largestGrowth);
  return median(ratios) <= largestRatio && growth <= largestGrowth ? 0 : 1;
}

}  // namespace
}  // namespace vek

int main(int count, char** arguments) {
  try {
    return vek::run(count > 1 ? std::stoi(arguments[1]) : 10'000);
  } catch (std::exception const& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
}
