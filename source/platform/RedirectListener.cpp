// SPDX-License-Identifier: MIT
#include "platform/RedirectListener.hpp"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/Files.hpp"
#include "platform/Folders.hpp"
#include "platform/WebAuthenticationSession.hpp"

namespace vek {
namespace {

// A redirect goes as one packet behind a letter that says what is to be done with it; the answer is
// whether it was.
constexpr char takeIfExpected = 'e';
constexpr char take = 't';
constexpr char yes = 'y';
constexpr char no = 'n';

constexpr std::size_t longestPacket = 64 * 1024;
constexpr std::string_view ending = ".socket";
/// Which a process that was stopped does not hold up.
constexpr timeval patience{.tv_sec = 2, .tv_usec = 0};

std::filesystem::path folder() {
  return runtimeFolder() / "vek";
}

std::system_error failure(std::filesystem::path const& path, int code = errno) {
  return {code, std::generic_category(), path.string()};
}

sockaddr_un address(std::filesystem::path const& path) {
  sockaddr_un result{.sun_family = AF_UNIX, .sun_path = {}};
  if (path.native().size() >= sizeof result.sun_path) throw failure(path, ENAMETOOLONG);
  std::memcpy(result.sun_path, path.c_str(), path.native().size());
  return result;
}

char answerTo(std::string_view packet) {
  if (packet.empty()) return no;
  std::string const url(packet.substr(1));
  bool const isMeant = packet[0] == take || WebAuthenticationSession::expects(url);
  return isMeant && WebAuthenticationSession::handleCallback(url) ? yes : no;
}

class Socket {
 public:
  explicit Socket(int file = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)) : file_(file) {
    if (file_ < 0) throw failure("socket");
  }
  Socket(Socket const&) = delete;
  Socket& operator=(Socket const&) = delete;
  ~Socket() { close(file_); }

  [[nodiscard]] int file() const { return file_; }

  void listenAt(std::filesystem::path const& path) const {
    auto const place = address(path);
    // What a process left behind that was killed; that it lives no longer, the lock says.
    unlink(path.c_str());
    if (bind(file_, reinterpret_cast<sockaddr const*>(&place), sizeof place) != 0 ||
        listen(file_, SOMAXCONN) != 0) {
      throw failure(path);
    }
  }

  [[nodiscard]] bool connectTo(std::filesystem::path const& path) const {
    auto const place = address(path);
    setsockopt(file_, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    return connect(file_, reinterpret_cast<sockaddr const*>(&place), sizeof place) == 0;
  }

  bool send(std::string_view packet) const {
    return ::send(file_, packet.data(), packet.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(packet.size());
  }

  /// Nothing when none comes in time, or one that is too long.
  [[nodiscard]] std::optional<std::string> receive() const {
    setsockopt(file_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    std::string packet(longestPacket, '\0');
    auto const size = recv(file_, packet.data(), packet.size(), MSG_TRUNC);
    if (size <= 0 || static_cast<std::size_t>(size) > packet.size()) return std::nullopt;
    packet.resize(static_cast<std::size_t>(size));
    return packet;
  }

 private:
  int file_;
};

/// Offers a redirect to who listens at `path`. Whether it was taken.
bool offer(std::filesystem::path const& path, char what, std::string const& url) {
  Socket const socket;
  return socket.connectTo(path) && socket.send(what + url) &&
         socket.receive() == std::string(1, yes);
}

FileLock lockOf(std::string_view name) {
  try {
    return FileLock(folder() / (std::string(name) + ".lock"), std::chrono::milliseconds(0));
  } catch (std::system_error const& error) {
    if (error.code() != std::errc::timed_out) throw;
    throw RedirectListener::NameIsTaken(std::string(name) + " waits for a redirect already.");
  }
}

}  // namespace

class RedirectListener::Impl {
 public:
  explicit Impl(std::string_view name)
      : lock_(lockOf(name)), path_(folder() / (std::string(name) + std::string(ending))) {
    // Throws where the folder is somebody else's.
    std::filesystem::permissions(folder(), std::filesystem::perms::owner_all);
    socket_.listenAt(path_);
    thread_ = std::thread([this] { run(); });
  }
  Impl(Impl const&) = delete;
  Impl& operator=(Impl const&) = delete;
  ~Impl() {
    eventfd_write(stop_.file(), 1);
    thread_.join();
    unlink(path_.c_str());
  }

 private:
  void run() const {
    std::array<pollfd, 2> ready{{{.fd = socket_.file(), .events = POLLIN, .revents = 0},
                                 {.fd = stop_.file(), .events = POLLIN, .revents = 0}}};
    while (true) {
      if (poll(ready.data(), ready.size(), -1) < 0) continue;
      if (ready[1].revents != 0) return;
      int const file = accept4(socket_.file(), nullptr, nullptr, SOCK_CLOEXEC);
      if (file < 0) continue;
      Socket const visitor(file);
      if (auto const packet = visitor.receive()) visitor.send(std::string(1, answerTo(*packet)));
    }
  }

  FileLock lock_;
  std::filesystem::path path_;
  Socket socket_;
  Socket stop_{eventfd(0, EFD_CLOEXEC)};
  std::thread thread_;
};

RedirectListener::RedirectListener(std::string_view name) : impl_(std::make_unique<Impl>(name)) {}

RedirectListener::~RedirectListener() = default;

bool deliverRedirect(std::string const& url) {
  if (url.size() >= longestPacket) return false;
  std::error_code ignored;
  for (char const what : {takeIfExpected, take}) {
    for (auto const& entry : std::filesystem::directory_iterator(folder(), ignored)) {
      auto const& path = entry.path();
      if (path.native().ends_with(ending) && offer(path, what, url)) return true;
    }
  }
  return false;
}

}  // namespace vek
