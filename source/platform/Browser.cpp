// SPDX-License-Identifier: MIT
#include "platform/Browser.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <future>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "platform/ProcessEnvironment.hpp"

namespace vek {
namespace {

/// What fails does so at once; what is still at work after a while is the browser itself.
constexpr std::chrono::seconds patience{3};

bool isSet(char const* variable) {
  char const* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

/// Starts a program that neither the signals of our terminal nor our own settings of them reach,
/// and that writes nothing there. The result is its process, or less than 0.
pid_t start(std::vector<std::string> words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (int const file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, file, "/dev/null", O_RDWR, 0);
  }
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  sigset_t ours;
  sigemptyset(&ours);
  sigaddset(&ours, SIGPIPE);
  posix_spawnattr_setsigdefault(&attributes, &ours);
  posix_spawnattr_setflags(&attributes,
                           POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  pid_t process = -1;
  auto const environment = heldEnvironment();
  int const code =
      posix_spawnp(&process, arguments[0], &actions, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return code == 0 ? process : -1;
}

/// Whether it ends well, or goes on for longer than failing takes.
bool succeeds(pid_t process) {
  auto const ended = std::make_shared<std::promise<int>>();
  auto status = ended->get_future();
  // Waits for as long as it runs, so that nothing of it is left behind.
  std::thread([process, ended] {
    int result = 0;
    while (waitpid(process, &result, 0) < 0 && errno == EINTR) continue;
    ended->set_value(result);
  }).detach();
  return status.wait_for(patience) != std::future_status::ready || status.get() == 0;
}

}  // namespace

bool hasDesktop() {
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

void openInBrowser(std::string const& url) {
  for (std::vector<std::string> words : {std::vector<std::string>{"xdg-open"}, {"gio", "open"}}) {
    words.push_back(url);
    auto const process = start(std::move(words));
    if (process >= 0 && succeeds(process)) return;
  }
  throw std::runtime_error("The browser could not be opened.");
}

}  // namespace vek
