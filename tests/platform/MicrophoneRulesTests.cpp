// SPDX-License-Identifier: MIT
#include "platform/MicrophoneRules.hpp"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <fstream>

#include "platform/CaptureDevice.hpp"
#include "support/Environment.hpp"
#include "support/PermissionStore.hpp"
#include "support/SessionBus.hpp"
#include "support/SoundServer.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;
using Clock = std::chrono::steady_clock;

/// Listens, and never answers.
class DeafListener {
 public:
  explicit DeafListener(std::filesystem::path const& path)
      : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    auto const* const generic = reinterpret_cast<sockaddr const*>(&address);
    EXPECT_EQ(bind(socket_, generic, sizeof address), 0);
    listen(socket_, 4);
  }
  DeafListener(DeafListener const&) = delete;
  DeafListener& operator=(DeafListener const&) = delete;
  ~DeafListener() { close(socket_); }

 private:
  int socket_;
};

int freePort() {
  int const probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  EXPECT_EQ(bind(probe, generic, size), 0);
  getsockname(probe, generic, &size);
  close(probe);
  return ntohs(address.sin_port);
}

TEST(MicrophoneRules, PermissionStoreDeniesByItsEntryOnThisProgramOrOnThoseInNoSandbox) {
  struct Row {
    test::PermissionStore::Permissions permissions;
    bool isDenied;
  };
  for (auto const& [permissions, isDenied] :
       {Row{{}, false}, Row{{{"com.vek.app", "no"}}, true}, Row{{{"com.vek.app", "yes"}}, false},
        Row{{{"com.vek.app", "ask"}}, false}, Row{{{"", "no"}}, true},
        Row{{{"", "no"}, {"com.vek.app", "yes"}}, false}, Row{{{"org.other.app", "no"}}, false}}) {
    test::SessionBus const bus;
    test::EnvironmentVariable const address("DBUS_SESSION_BUS_ADDRESS", bus.address());
    test::PermissionStore const store(bus.address(), permissions);
    EXPECT_EQ(isMicrophoneDeniedByPermissionStore(2s), isDenied)
        << testing::PrintToString(permissions);
  }
}

TEST(MicrophoneRules, WhatDoesNotAnswerIsNoDenialAndIsNotWaitedForLong) {
  test::TemporaryFolder const folder;
  DeafListener const deaf(folder / "deaf");
  auto const path = (folder / "deaf").string();
  test::SessionBus const emptyBus;
  for (auto const& address :
       {"unix:path=" + path, "unix:path=" + path + "-absent", emptyBus.address()}) {
    test::EnvironmentVariable const variable("DBUS_SESSION_BUS_ADDRESS", address);
    auto const start = Clock::now();
    EXPECT_FALSE(isMicrophoneDeniedByPermissionStore(200ms)) << address;
    EXPECT_LT(Clock::now() - start, 2s) << address;
  }
  for (auto const& address : {"unix:" + path, "unix:" + path + "-absent"}) {
    auto const start = Clock::now();
    EXPECT_FALSE(isMicrophoneDeniedBySoundServer(address, 200ms)) << address;
    EXPECT_LT(Clock::now() - start, 2s) << address;
  }
}

TEST(MicrophoneRules, SoundServerDeniesWhomItDoesNotKnow) {
  test::SoundServer const server;
  // Over a socket of the same user everybody is known.
  EXPECT_FALSE(isMicrophoneDeniedBySoundServer(server.address(), 5s));
  auto const port = std::to_string(freePort());
  server.load("module-native-protocol-tcp listen=127.0.0.1 port=" + port +
              " auth-anonymous=0 auth-cookie=" + server.path("another-cookie").string());
  auto const address = "tcp:127.0.0.1:" + port;
  EXPECT_TRUE(isMicrophoneDeniedBySoundServer(address, 5s));

  test::EnvironmentVariable const noBus("DBUS_SESSION_BUS_ADDRESS", "unix:path=/absent");
  auto const status = [](std::string const& soundServer) {
    auto const device = captureDevice({.soundServer = soundServer});
    std::optional<bool> isGranted;
    device.requestAccessForMediaType(MediaType::audio, [&](bool granted) { isGranted = granted; });
    auto const found = device.authorizationStatusForMediaType(MediaType::audio);
    EXPECT_EQ(isGranted, found == AuthorizationStatus::authorized);
    return found;
  };
  EXPECT_EQ(status(address), AuthorizationStatus::denied);
  EXPECT_EQ(status(server.address()), AuthorizationStatus::authorized);
}

TEST(MicrophoneRules, SandboxNeedsTheSoundSocket) {
  test::TemporaryFolder const folder;
  auto const info = folder / "info";
  EXPECT_FALSE(isMicrophoneDeniedBySandbox(info));
  for (auto const& [context, isDenied] :
       {std::pair{"sockets=x11;wayland;pulseaudio;\n", false},
        std::pair{"sockets=x11;wayland;\n", true}, std::pair{"shared=network;\n", true}}) {
    std::ofstream(info) << "[Application]\nname=com.vek.app\n\n[Context]\n" << context;
    EXPECT_EQ(isMicrophoneDeniedBySandbox(info), isDenied) << context;
  }
}

}  // namespace
}  // namespace vek
