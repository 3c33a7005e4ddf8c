// SPDX-License-Identifier: MIT
#include "support/SoundServer.hpp"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <utility>

namespace vek::test {

namespace {

constexpr std::chrono::seconds startTimeout{20};

// Each ends when its input does, which is when the test has ended, however it did.
constexpr auto pulseAudio = R"(
setpriv --pdeathsig KILL pulseaudio -n --daemonize=no --use-pid-file=no --exit-idle-time=-1 \
  --disable-shm=yes --log-level=error \
  -L "module-native-protocol-unix socket=$XDG_RUNTIME_DIR/pulse/native auth-anonymous=1" &
read -r end
)";
constexpr auto pipeWire = R"(
exec dbus-run-session -- sh -c '
  setpriv --pdeathsig KILL pipewire &
  until [ -S "$XDG_RUNTIME_DIR/pipewire-0" ]; do sleep 0.02; done
  setpriv --pdeathsig KILL wireplumber &
  setpriv --pdeathsig KILL pipewire-pulse &
  read -r end'
)";

bool accepts(std::string const& socketPath) {
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
  int const connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how sockets are addressed.
  auto const* const generic = reinterpret_cast<sockaddr const*>(&address);
  bool const isAccepted = connect(connection, generic, sizeof address) == 0;
  close(connection);
  return isAccepted;
}

}  // namespace

SoundServer::SoundServer(Kind kind) : kind_(kind) {
  start();
}

void SoundServer::start() {
  std::array<int, 2> lifeline{};
  if (pipe2(lifeline.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  std::filesystem::create_directories(socket().parent_path());
  std::string const folder = folder_.path().string();
  std::array<std::string, 5> words = {
      "env",
      "-uDBUS_SESSION_BUS_ADDRESS",
      "HOME=" + folder,
      "XDG_RUNTIME_DIR=" + folder,
      "XDG_CONFIG_HOME=" + folder,
  };
  std::string shell = "sh";
  std::string option = "-c";
  std::string script = kind_ == Kind::pulseAudio ? pulseAudio : pipeWire;
  std::array<char*, 9> arguments = {words[0].data(), words[1].data(), words[2].data(),
                                    words[3].data(), words[4].data(), shell.data(),
                                    option.data(),   script.data(),   nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, lifeline[0], STDIN_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, (folder_ / "log").c_str(),
                                   O_WRONLY | O_CREAT | O_APPEND, 0600);
  int const code = posix_spawnp(&pid_, "env", &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(lifeline[0]);
  lifeline_ = lifeline[1];
  if (code != 0) throw std::runtime_error("the sound server was not started");

  auto const deadline = std::chrono::steady_clock::now() + startTimeout;
  while (!isReady()) {
    if (std::chrono::steady_clock::now() > deadline) {
      kill();
      throw std::runtime_error("the sound server did not come up");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

bool SoundServer::isReady() const {
  if (!accepts(socket())) return false;
  // The session manager comes up behind the server, and makes a sink where there is none.
  return kind_ != Kind::pipeWire || pactl("info").find("auto_null") != std::string::npos;
}

void SoundServer::kill() {
  if (pid_ < 0) return;
  close(std::exchange(lifeline_, -1));
  while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) continue;
  pid_ = -1;
  // The server is killed by the end of its parent, a moment later.
  while (accepts(socket())) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

std::string SoundServer::pactl(std::string const& arguments) const {
  std::string const command =
      "HOME=" + folder_.path().string() + " pactl -s " + address() + " " + arguments;
  auto* const pipe = popen(command.c_str(), "re");
  if (!pipe) throw std::runtime_error("pactl was not started");
  std::string output;
  std::array<char, 256> block{};
  while (auto const count = fread(block.data(), 1, block.size(), pipe)) {
    output.append(block.data(), count);
  }
  if (pclose(pipe) != 0) throw std::runtime_error("failed: pactl " + arguments);
  while (output.ends_with('\n')) output.pop_back();
  return output;
}

std::string SoundServer::loadPipeMicrophone(std::string const& name, int rate, int channels) const {
  return load("module-pipe-source source_name=" + name + " file=" + path(name).string() +
              " format=s16le rate=" + std::to_string(rate) +
              " channels=" + std::to_string(channels));
}

MicrophonePipe::MicrophonePipe(std::filesystem::path const& path)
    : file_(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) {
  if (file_ < 0) throw std::runtime_error("no pipe at " + path.string());
  // A server that is gone shows as an error of the write.
  std::signal(SIGPIPE, SIG_IGN);
}

MicrophonePipe::~MicrophonePipe() {
  close(file_);
}

void MicrophonePipe::speak(std::span<std::int16_t const> samples) const {
  auto bytes = std::as_bytes(samples);
  while (!bytes.empty()) {
    pollfd room{.fd = file_, .events = POLLOUT, .revents = 0};
    if (poll(&room, 1, 10'000) <= 0) throw std::runtime_error("nobody listens to the pipe");
    // What fits at once is written whole, so that frames stay whole.
    auto const written = write(file_, bytes.data(), std::min<std::size_t>(bytes.size(), PIPE_BUF));
    if (written < 0) throw std::runtime_error("nobody listens to the pipe");
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
}

bool MicrophonePipe::offer(std::span<std::int16_t const> samples) const {
  if (samples.size_bytes() > PIPE_BUF) throw std::invalid_argument("too much for one write");
  // A full pipe and one that nobody reads are alike.
  return write(file_, samples.data(), samples.size_bytes()) > 0;
}

}  // namespace vek::test
