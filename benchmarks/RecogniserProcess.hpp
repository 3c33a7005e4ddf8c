// SPDX-License-Identifier: MIT
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

#include "support/TestAuthority.hpp"
#include "support/WebSocketTestServer.hpp"

namespace vek::test {

/// A scripted recogniser behind TLS in a process of its own, so that what it costs is not counted
/// here. To be made before there are threads.
class RecogniserProcess {
 public:
  /// What the recogniser got.
  struct Taken {
    std::uint64_t messages = 0;
    std::uint64_t bytes = 0;
    std::uint64_t closeCode = 0;
    /// Whether each message began with its number, in 32 bits.
    bool isInOrder = true;
  };

  explicit RecogniserProcess(WebSocketScript const& script) {
    if (pipe(toServer_.data()) != 0 || pipe(fromServer_.data()) != 0) throw failure();
    process_ = fork();
    if (process_ < 0) throw failure();
    if (process_ == 0) serve(script);
    close(toServer_[0]);
    close(fromServer_[1]);
    port_ = take<int>();
  }
  RecogniserProcess(RecogniserProcess const&) = delete;
  RecogniserProcess& operator=(RecogniserProcess const&) = delete;
  ~RecogniserProcess() {
    close(toServer_[1]);
    close(fromServer_[0]);
    waitpid(process_, nullptr, 0);
  }

  [[nodiscard]] std::string url() const { return "wss://localhost:" + std::to_string(port_); }
  [[nodiscard]] int port() const { return port_; }
  [[nodiscard]] std::filesystem::path authority() const { return authority_.authority(); }

  /// Waits until the client has ended its one connection.
  Taken taken() {
    give(0);
    return take<Taken>();
  }

 private:
  static std::runtime_error failure() { return std::runtime_error("There is no second process."); }

  [[noreturn]] void serve(WebSocketScript const& script) {
    close(toServer_[1]);
    close(fromServer_[0]);
    std::uint32_t next = 0;
    std::atomic<bool> isInOrder = true;
    WebSocketTestServer const server({script}, {.identity = authority_.localhost(),
                                                .keepsBinaryMessages = false,
                                                .onBinary = [&](std::string_view bytes) {
                                                  std::uint32_t number = 0;
                                                  std::memcpy(&number, bytes.data(), sizeof number);
                                                  if (number != next++) isInOrder = false;
                                                }});
    give(server.port(), fromServer_[1]);
    int question = 0;
    while (read(toServer_[0], &question, sizeof question) > 0) {
      std::ignore = server.waitForEnd(1);
      auto const connection = server.connections().at(0);
      give(Taken{.messages = connection.messageCount,
                 .bytes = connection.binaryBytes,
                 .closeCode = static_cast<std::uint64_t>(connection.closeCode.value_or(0)),
                 .isInOrder = isInOrder},
           fromServer_[1]);
    }
    _exit(EXIT_SUCCESS);
  }

  template <class Value>
  void give(Value value) const {
    give(value, toServer_[1]);
  }
  template <class Value>
  static void give(Value value, int descriptor) {
    if (write(descriptor, &value, sizeof value) != sizeof value) throw failure();
  }
  template <class Value>
  Value take() const {
    Value value{};
    if (read(fromServer_[0], &value, sizeof value) != sizeof value) throw failure();
    return value;
  }

  TestAuthority authority_;
  std::array<int, 2> toServer_{};
  std::array<int, 2> fromServer_{};
  pid_t process_ = -1;
  int port_ = 0;
};

}  // namespace vek::test
