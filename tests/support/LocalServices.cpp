// SPDX-License-Identifier: MIT
#include "support/LocalServices.hpp"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "platform/Files.hpp"
#include "records/JSON.hpp"
#include "support/IdentityClient.hpp"

namespace vek::test {

namespace {

constexpr std::chrono::seconds startTimeout{30};
constexpr std::string_view readiness = "Listening on https://localhost:";

/// Starts the program so that it dies with the calling thread, whatever happens to the test.
pid_t spawn(std::vector<std::string> const& arguments, int output, int errorOutput) {
  std::vector<std::string> words = {"setpriv", "--pdeathsig", "KILL", VEK_SERVICES_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (auto& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, errorOutput, STDERR_FILENO);
  pid_t pid = -1;
  int const code = posix_spawnp(&pid, "setpriv", &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (code != 0) throw std::runtime_error("vek-services was not started");
  return pid;
}

/// What comes through `input` up to the line that says that all is ready, or all of it when there
/// is none.
std::string readUntilReady(int input) {
  auto const deadline = std::chrono::steady_clock::now() + startTimeout;
  std::string text;
  auto const isReady = [&] { return text.find('\n', text.find(readiness)) != std::string::npos; };
  while (!isReady() && std::chrono::steady_clock::now() < deadline) {
    pollfd ready{.fd = input, .events = POLLIN, .revents = 0};
    if (poll(&ready, 1, 100) <= 0) continue;
    std::array<char, 256> block{};
    auto const count = read(input, block.data(), block.size());
    if (count <= 0) break;
    text.append(block.data(), static_cast<std::size_t>(count));
  }
  return text;
}

int waitFor(pid_t pid) {
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) continue;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

LocalServices::LocalServices(std::vector<std::string> arguments)
    : arguments_(std::move(arguments)) {
  start();
}

LocalServices::~LocalServices() {
  end(SIGKILL);
}

void LocalServices::start() {
  std::array<int, 2> channel{};
  if (pipe2(channel.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  int const log =
      open((temporary_ / "log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  std::vector<std::string> arguments = {"--data", folder().string(), "--port",
                                        std::to_string(port_)};
  arguments.insert(arguments.end(), arguments_.begin(), arguments_.end());
  pid_ = spawn(arguments, channel[1], log);
  close(log);
  close(channel[1]);
  output_ = readUntilReady(channel[0]);
  close(channel[0]);
  auto const ready = output_.find(readiness);
  if (ready == std::string::npos) {
    end(SIGKILL);
    throw std::runtime_error("vek-services did not start: " + output_ + this->log());
  }
  port_ = std::atoi(output_.c_str() + ready + readiness.size());
}

IssuedTokens const& LocalServices::tokens() const {
  std::lock_guard const lock(mutex_);
  if (!tokens_) tokens_ = IdentityClient(*this).signIn();
  return *tokens_;
}

LocalServices::Account LocalServices::account() const {
  auto const entries = json::decode<std::map<std::string, std::string>>(
      readFile(folder() / "first-account").value_or(""));
  return {entries.at("name"), entries.at("password")};
}

std::string LocalServices::log() const {
  return readFile(temporary_ / "log").value_or("");
}

int LocalServices::stop() {
  return end(SIGTERM);
}

void LocalServices::kill() {
  end(SIGKILL);
}

int LocalServices::end(int signal) {
  if (pid_ < 0) return 0;
  ::kill(pid_, signal);
  return waitFor(std::exchange(pid_, -1));
}

FinishedRun runLocalServices(std::vector<std::string> const& arguments) {
  std::array<int, 2> channel{};
  if (pipe2(channel.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  pid_t const pid = spawn(arguments, channel[1], channel[1]);
  close(channel[1]);
  std::string output;
  std::array<char, 256> block{};
  for (ssize_t count; (count = read(channel[0], block.data(), block.size())) > 0;) {
    output.append(block.data(), static_cast<std::size_t>(count));
  }
  close(channel[0]);
  return {waitFor(pid), output};
}

}  // namespace vek::test
