// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "support/IssuedTokens.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek::test {

/// The built `vek-services`, running in a temporary folder on a free port. It ends with this
/// object, and with the thread that started it.
class LocalServices {
 public:
  /// Starts it, with these arguments beside --data and --port. Throws std::runtime_error, with
  /// what the program wrote, when it does not come up.
  explicit LocalServices(std::vector<std::string> arguments = {});
  LocalServices(LocalServices const&) = delete;
  LocalServices& operator=(LocalServices const&) = delete;
  ~LocalServices();

  /// Such as "https://localhost:38947".
  [[nodiscard]] std::string url() const { return "https://localhost:" + std::to_string(port_); }
  /// The same for a WebSocket.
  [[nodiscard]] std::string webSocketURL() const {
    return "wss://localhost:" + std::to_string(port_);
  }
  [[nodiscard]] int port() const { return port_; }
  [[nodiscard]] std::filesystem::path folder() const { return temporary_ / "data"; }
  /// The PEM file of the authority to trust.
  [[nodiscard]] std::filesystem::path authority() const { return folder() / "authority.pem"; }
  /// What the first account got when it signed in, which it does at the first call. Any thread.
  [[nodiscard]] IssuedTokens const& tokens() const;
  [[nodiscard]] std::string token() const { return tokens().accessToken; }
  /// Who can sign in.
  struct Account {
    std::string name;
    std::string password;
  };
  [[nodiscard]] Account account() const;
  /// What it wrote to standard output at its last start.
  [[nodiscard]] std::string const& output() const { return output_; }
  /// What it wrote to standard error.
  [[nodiscard]] std::string log() const;
  [[nodiscard]] pid_t pid() const { return pid_; }

  /// Ends it gently and returns its exit status.
  int stop();
  /// Ends it like a crash.
  void kill();
  /// Starts it again in the same folder and on the same port.
  void start();

 private:
  int end(int signal);

  TemporaryFolder temporary_;
  mutable std::mutex mutex_;
  mutable std::optional<IssuedTokens> tokens_;
  std::vector<std::string> arguments_;
  std::string output_;
  int port_ = 0;
  pid_t pid_ = -1;
};

/// How a run of `vek-services` ended that was expected to end by itself.
struct FinishedRun {
  int status;
  std::string output;
};
/// Runs it with these arguments alone, to its end.
[[nodiscard]] FinishedRun runLocalServices(std::vector<std::string> const& arguments);

}  // namespace vek::test
