// SPDX-License-Identifier: MIT
#include "support/VekctlRun.hpp"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <boost/json.hpp>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace vek::test {

namespace {

using Clock = std::chrono::steady_clock;

/// Long enough for a machine that has much else to do.
constexpr std::chrono::seconds limit{120};

struct Ends {
  int reading;
  int writing;
};

Ends makePipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  return {ends[0], ends[1]};
}

Ends makeTerminal(unsigned short columns) {
  int master = -1;
  int slave = -1;
  winsize const size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
  if (openpty(&master, &slave, nullptr, nullptr, &size) != 0) {
    throw std::runtime_error("no terminal");
  }
  fcntl(master, F_SETFD, FD_CLOEXEC);
  fcntl(slave, F_SETFD, FD_CLOEXEC);
  return {master, slave};
}

std::filesystem::path writeDeployment(VekctlSurroundings const& surroundings) {
  auto file = surroundings.folder / "deployment.json";
  boost::json::object values;
  for (auto const& [key, value] : surroundings.deployment) values[key] = value;
  std::ofstream(file) << boost::json::serialize(values);
  return file;
}

}  // namespace

VekctlSurroundings::VekctlSurroundings() {
  environment = {{"XDG_CONFIG_HOME", (folder / "config").string()},
                 {"XDG_DATA_HOME", dataHome().string()},
                 {"XDG_RUNTIME_DIR", folder.path().string()},
                 {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (folder / "no-session-bus").string()},
                 {"PULSE_SERVER", "unix:" + (folder / "no-sound-server").string()},
                 {"TERM", "xterm"}};
}

VekctlRun::VekctlRun(VekctlSurroundings const& surroundings, std::vector<std::string> arguments,
                     Messages messages, unsigned short columns) {
  auto const output = makePipe();
  auto const errors = messages == Messages::toPipe ? makePipe() : makeTerminal(columns);
  channels_[0].file = output.reading;
  channels_[1].file = errors.reading;

  std::vector<std::string> words = {"env", "-u", "VEK_LOG"};
  auto variables = surroundings.environment;
  variables.try_emplace("VEK_DEPLOYMENT_FILE", writeDeployment(surroundings).string());
  for (auto const& [name, value] : variables) words.push_back(name + "=" + value);
  words.insert(words.end(), {"setpriv", "--pdeathsig", "KILL", VEKCTL_PROGRAM});
  std::ranges::move(arguments, std::back_inserter(words));
  std::vector<char*> pointers;
  for (auto& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, surroundings.input.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, output.writing, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, errors.writing, STDERR_FILENO);
  int const code = posix_spawnp(&pid_, "env", &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(output.writing);
  close(errors.writing);
  if (code != 0) throw std::runtime_error("vekctl was not started");
}

VekctlRun::~VekctlRun() {
  signal(SIGKILL);
  if (pid_ >= 0) waitpid(pid_, nullptr, 0);
  for (auto const& channel : channels_) {
    if (channel.file >= 0) close(channel.file);
  }
}

std::vector<std::string> VekctlRun::lines() const {
  std::vector<std::string> found;
  for (std::size_t begin = 0, end = 0; (end = output().find('\n', begin)) != std::string::npos;
       begin = end + 1) {
    found.push_back(output().substr(begin, end - begin));
  }
  return found;
}

/// Reads what comes until there is enough of it. False at its end or when time is up.
template <class Predicate>
bool VekctlRun::readUntil(Predicate isEnough) {
  auto const deadline = Clock::now() + limit;
  std::array<pollfd, 2> ready{{{.fd = channels_[0].file, .events = POLLIN, .revents = 0},
                               {.fd = channels_[1].file, .events = POLLIN, .revents = 0}}};
  while (!isEnough()) {
    bool const isOver = ready[0].fd < 0 && ready[1].fd < 0;
    if (isOver || Clock::now() > deadline) return false;
    if (poll(ready.data(), ready.size(), 100) <= 0) continue;
    for (std::size_t i = 0; i < ready.size(); ++i) {
      if (ready[i].revents == 0) continue;
      std::array<char, 4096> block{};
      auto const count = read(ready[i].fd, block.data(), block.size());
      if (count > 0) {
        channels_[i].text.append(block.data(), static_cast<std::size_t>(count));
      } else {
        ready[i].fd = -1;  // which poll passes over
      }
    }
  }
  return true;
}

bool VekctlRun::waitForOutput(std::string_view text) {
  return readUntil([&] { return output().find(text) != std::string::npos; });
}

bool VekctlRun::waitForMessage(std::string_view text) {
  return readUntil([&] { return messages().find(text) != std::string::npos; });
}

void VekctlRun::closeOutput() {
  close(std::exchange(channels_[0].file, -1));
}

void VekctlRun::signal(int number) const {
  if (pid_ >= 0) kill(pid_, number);
}

int VekctlRun::wait() {
  auto const begun = Clock::now();
  readUntil([] { return false; });
  if (Clock::now() - begun >= limit) return -1;
  int status = 0;
  while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) continue;
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

VekctlResult runVekctl(VekctlSurroundings const& surroundings, std::vector<std::string> arguments) {
  VekctlRun run(surroundings, std::move(arguments));
  int const status = run.wait();
  return {status, run.output(), run.messages()};
}

}  // namespace vek::test
