// SPDX-License-Identifier: MIT
#include "support/SecretService.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace vek::test {

namespace {

using Bus = std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)>;

constexpr std::chrono::seconds startTimeout{20};
constexpr auto serviceName = "org.freedesktop.secrets";
constexpr auto servicePath = "/org/freedesktop/secrets";
constexpr auto serviceInterface = "org.freedesktop.Secret.Service";
constexpr auto collection = "/org/freedesktop/secrets/collection/login";
constexpr std::string_view password = "password";

Bus connectTo(std::string const& address) {
  sd_bus* bus = nullptr;
  bool const isUp = sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address.c_str()) >= 0 &&
                    sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_start(bus) >= 0;
  Bus owned(bus, &sd_bus_flush_close_unref);
  if (!isUp) throw std::runtime_error("no connection to the session bus");
  return owned;
}

void require(int status, char const* what) {
  if (status < 0) throw std::runtime_error(std::string("the keyring did not ") + what);
}

/// Starts a program that ends with this thread.
pid_t spawn(std::vector<std::string> words, int input, int output, std::string const& log) {
  words.insert(words.begin(), {"setpriv", "--pdeathsig", "KILL"});
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, log.c_str(),
                                   O_WRONLY | O_CREAT | O_APPEND, 0600);
  pid_t pid = -1;
  int const code = posix_spawnp(&pid, "setpriv", &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (code != 0) throw std::runtime_error(words[3] + " was not started");
  return pid;
}

void end(pid_t pid) {
  if (pid < 0) return;
  ::kill(pid, SIGKILL);
  while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) continue;
}

std::array<int, 2> makePipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  return ends;
}

}  // namespace

void SecretService::start(Keyring keyring) {
  auto const input = makePipe();
  std::string const folder = folder_.path().string();
  std::vector<std::string> words = {"env",
                                    "-uDISPLAY",
                                    "-uWAYLAND_DISPLAY",
                                    "DBUS_SESSION_BUS_ADDRESS=" + address(),
                                    "HOME=" + folder,
                                    "XDG_DATA_HOME=" + folder,
                                    "XDG_RUNTIME_DIR=" + folder,
                                    "gnome-keyring-daemon",
                                    "--foreground",
                                    "--components=secrets",
                                    "--control-directory=" + folder};
  if (keyring == Keyring::unlocked) words.emplace_back("--unlock");
  int const nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  pid_ = spawn(std::move(words), input[0], nowhere, folder_ / "log");
  close(nowhere);
  close(input[0]);
  bool const isGiven = write(input[1], password.data(), password.size()) > 0;
  close(input[1]);
  auto const deadline = std::chrono::steady_clock::now() + startTimeout;
  while (!isReady()) {
    if (!isGiven || std::chrono::steady_clock::now() > deadline) {
      kill();
      throw std::runtime_error("the keyring did not come up");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

/// It has its name before it knows its items.
bool SecretService::isReady() const {
  int isLocked = 0;
  return sd_bus_get_property_trivial(connectTo(address()).get(), serviceName, collection,
                                     "org.freedesktop.Secret.Collection", "Locked", nullptr, 'b',
                                     &isLocked) >= 0;
}

void SecretService::kill() {
  end(std::exchange(pid_, -1));
}

void SecretService::lock() const {
  auto const bus = connectTo(address());
  require(sd_bus_call_method(bus.get(), serviceName, servicePath, serviceInterface, "Lock", nullptr,
                             nullptr, "ao", 1, collection),
          "lock");
}

void SecretService::unlock() const {
  auto const bus = connectTo(address());
  sd_bus_message* opened = nullptr;
  require(sd_bus_call_method(bus.get(), serviceName, servicePath, serviceInterface, "OpenSession",
                             nullptr, &opened, "sv", "plain", "s", ""),
          "open a session");
  char const* session = nullptr;
  sd_bus_message_skip(opened, "v");
  sd_bus_message_read(opened, "o", &session);
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(bus.get(), &call, serviceName, servicePath,
                                 "org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface",
                                 "UnlockWithMasterPassword");
  sd_bus_message_append(call, "o", collection);
  sd_bus_message_open_container(call, 'r', "oayays");
  sd_bus_message_append(call, "o", session);
  sd_bus_message_append_array(call, 'y', "", 0);
  sd_bus_message_append_array(call, 'y', password.data(), password.size());
  sd_bus_message_append(call, "s", "text/plain");
  sd_bus_message_close_container(call);
  int const status = sd_bus_call(bus.get(), call, 0, nullptr, nullptr);
  sd_bus_message_unref(call);
  sd_bus_message_unref(opened);
  require(status, "unlock");
}

SecretServiceCalls::SecretServiceCalls(SecretService const& service) : address_(service.address()) {
  auto const output = makePipe();
  int const nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  pid_ = spawn({"dbus-monitor", "--address", address_, "--profile", "type='method_call'"}, nowhere,
               output[1], "/dev/null");
  close(nowhere);
  close(output[1]);
  output_ = output[0];
  fcntl(output_, F_SETFL, O_NONBLOCK);
  catchUp();
}

SecretServiceCalls::~SecretServiceCalls() {
  end(pid_);
  close(output_);
}

int SecretServiceCalls::count() {
  catchUp();
  return count_;
}

void SecretServiceCalls::catchUp() {
  std::string mark;
  auto const deadline = std::chrono::steady_clock::now() + startTimeout;
  while (true) {
    // Again and again, since the first ones come before the monitor watches.
    mark = "/mark/" + std::to_string(++marks_);
    auto const bus = connectTo(address_);
    sd_bus_call_method(bus.get(), "org.freedesktop.DBus", mark.c_str(), "org.freedesktop.DBus",
                       "GetId", nullptr, nullptr, "");
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    std::array<char, 4096> block{};
    for (ssize_t size; (size = read(output_, block.data(), block.size())) > 0;) {
      unread_.append(block.data(), static_cast<std::size_t>(size));
    }
    bool isUpToDate = false;
    for (std::size_t lineEnd; (lineEnd = unread_.find('\n')) != std::string::npos;) {
      auto const line = unread_.substr(0, lineEnd);
      unread_.erase(0, lineEnd + 1);
      if (line.find(servicePath) != std::string::npos) ++count_;
      if (line.find(mark) != std::string::npos) isUpToDate = true;
    }
    if (isUpToDate) return;
    if (std::chrono::steady_clock::now() > deadline) {
      throw std::runtime_error("the bus cannot be watched");
    }
  }
}

}  // namespace vek::test
