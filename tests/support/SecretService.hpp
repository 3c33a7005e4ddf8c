// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <csignal>
#include <cstdint>
#include <string>

#include "support/SessionBus.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek::test {

/// A session bus of its own with GNOME's keyring on it, which nothing can ask a user to open. Both
/// end with this object, and with the thread that made it.
class SecretService {
 public:
  enum class Keyring : std::uint8_t { unlocked, locked };

  /// A bus, on which the keyring is yet to be started. Throws std::runtime_error.
  SecretService() = default;
  /// One on which it runs.
  explicit SecretService(Keyring keyring) { start(keyring); }
  SecretService(SecretService const&) = delete;
  SecretService& operator=(SecretService const&) = delete;
  ~SecretService() { kill(); }

  /// In the form of DBUS_SESSION_BUS_ADDRESS.
  [[nodiscard]] std::string address() const { return bus_.address(); }

  /// Starts the keyring, which finds what an earlier one has stored. The first has to be unlocked.
  void start(Keyring keyring = Keyring::unlocked);
  /// Ends it like a crash.
  void kill();
  /// SIGSTOP and SIGCONT: it answers nothing, and goes on.
  void signal(int number) const { ::kill(pid_, number); }
  void lock() const;
  void unlock() const;

 private:
  [[nodiscard]] bool isReady() const;

  SessionBus bus_;
  TemporaryFolder folder_;
  pid_t pid_ = -1;
};

/// Counts the calls to the Secret Service of a bus, whoever makes them.
class SecretServiceCalls {
 public:
  /// Throws std::runtime_error when it cannot watch.
  explicit SecretServiceCalls(SecretService const& service);
  SecretServiceCalls(SecretServiceCalls const&) = delete;
  SecretServiceCalls& operator=(SecretServiceCalls const&) = delete;
  ~SecretServiceCalls();

  /// How many there were until now.
  [[nodiscard]] int count();

 private:
  /// Sends a call of its own, and reads until it passes.
  void catchUp();

  std::string address_;
  pid_t pid_ = -1;
  int output_ = -1;
  int count_ = 0;
  int marks_ = 0;
  std::string unread_;
};

}  // namespace vek::test
