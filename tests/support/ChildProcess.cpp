// SPDX-License-Identifier: MIT
#include "support/ChildProcess.hpp"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <thread>
#include <utility>

namespace vek::test {

ChildProcess::ChildProcess(std::vector<std::string> words, std::filesystem::path const& errors) {
  std::array<int, 2> input{};
  std::array<int, 2> output{};
  if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe");
  }
  input_ = input[1];
  output_ = output[0];
  words.insert(words.begin(), {"setpriv", "--pdeathsig", "KILL"});
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(),
                                   O_WRONLY | O_CREAT | O_APPEND, 0600);
  int const code = posix_spawnp(&pid_, "setpriv", &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(input[0]);
  close(output[1]);
  if (code == 0) return;
  close(input_);
  close(output_);
  throw std::runtime_error(words[3] + " was not started");
}

ChildProcess::~ChildProcess() {
  if (pid_ > 0) {
    signal(SIGKILL);
    while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) continue;
  }
  closeInput();
  close(output_);
}

void ChildProcess::write(std::string_view text) const {
  if (::write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw std::runtime_error("the program does not listen");
  }
}

void ChildProcess::closeInput() {
  if (input_ >= 0) close(std::exchange(input_, -1));
}

std::optional<std::string> ChildProcess::readLine(std::chrono::milliseconds limit) {
  auto const deadline = std::chrono::steady_clock::now() + limit;
  while (true) {
    if (auto const end = unread_.find('\n'); end != std::string::npos) {
      auto line = unread_.substr(0, end);
      unread_.erase(0, end + 1);
      return line;
    }
    auto const left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    pollfd ready{.fd = output_, .events = POLLIN, .revents = 0};
    if (left.count() < 0 || poll(&ready, 1, static_cast<int>(left.count())) <= 0) return {};
    std::array<char, 4096> block{};
    auto const size = read(output_, block.data(), block.size());
    if (size <= 0) return {};
    unread_.append(block.data(), static_cast<std::size_t>(size));
  }
}

void ChildProcess::signal(int number) const {
  // Once it has ended, its number would be everybody's.
  if (pid_ > 0) ::kill(pid_, number);
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds limit) {
  auto const deadline = std::chrono::steady_clock::now() + limit;
  int status = 0;
  while (waitpid(pid_, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > deadline) return {};
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace vek::test
