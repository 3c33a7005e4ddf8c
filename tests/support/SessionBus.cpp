// SPDX-License-Identifier: MIT
#include "support/SessionBus.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <fstream>
#include <stdexcept>

namespace vek::test {

namespace {

constexpr auto policy = R"(
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

SessionBus::SessionBus() {
  auto const configuration = (folder_ / "bus.conf").string();
  std::ofstream(configuration) << "<busconfig><type>session</type><listen>" << address()
                               << "</listen><auth>EXTERNAL</auth>" << policy;
  std::array<int, 2> ready{};
  if (pipe2(ready.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  std::array<std::string, 7> words = {"setpriv",
                                      "--pdeathsig",
                                      "KILL",
                                      "dbus-daemon",
                                      "--nofork",
                                      "--print-address",
                                      "--config-file=" + configuration};
  std::array<char*, 8> arguments{};
  for (std::size_t i = 0; i < words.size(); ++i) arguments[i] = words[i].data();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ready[1], STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, (folder_ / "log").c_str(),
                                   O_WRONLY | O_CREAT | O_APPEND, 0600);
  int const code = posix_spawnp(&pid_, "setpriv", &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ready[1]);
  // It prints its address once it listens there.
  char first = 0;
  bool const isReady = code == 0 && read(ready[0], &first, 1) == 1;
  close(ready[0]);
  if (!isReady) throw std::runtime_error("the session bus did not come up");
}

SessionBus::~SessionBus() {
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

}  // namespace vek::test
