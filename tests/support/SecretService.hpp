// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "support/ChildProcess.hpp"
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
  ~SecretService() = default;

  /// In the form of DBUS_SESSION_BUS_ADDRESS.
  [[nodiscard]] std::string address() const { return bus_.address(); }

  /// Starts the keyring, which finds what an earlier one has stored. The first has to be unlocked.
  void start(Keyring keyring = Keyring::unlocked);
  /// Ends it like a crash.
  void kill() { keyring_.reset(); }
  /// SIGSTOP and SIGCONT: it answers nothing, and goes on.
  void signal(int number) const { keyring_->signal(number); }
  void lock() const;
  void unlock() const;

 private:
  [[nodiscard]] bool isReady() const;

  SessionBus bus_;
  TemporaryFolder folder_;
  std::optional<ChildProcess> keyring_;
};

/// Counts the calls to the Secret Service of a bus, whoever makes them.
class SecretServiceCalls {
 public:
  /// Throws std::runtime_error when it cannot watch.
  explicit SecretServiceCalls(SecretService const& service);

  /// How many there were until now.
  [[nodiscard]] int count();

 private:
  /// Makes a call of its own, and reads until it passes.
  void catchUp();

  std::string address_;
  ChildProcess monitor_;
  int count_ = 0;
  int marks_ = 0;
};

}  // namespace vek::test
