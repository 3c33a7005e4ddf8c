// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <mutex>

#include "platform/GLibThread.hpp"
#include "platform/KeychainStore.hpp"
#include "platform/SecretServiceBus.hpp"

struct _GCancellable;

namespace vek {

class SecretServiceSession;

/// Keeps items in the desktop's Secret Service; errSecNotAvailable when no service runs. What a
/// read has found is remembered until the service tells of a change, and so is that the user did
/// not want to open a locked keyring. That nothing was found is not: a service that has just begun
/// may not have looked yet.
class SecretServiceKeychainStore final : public KeychainStore {
 public:
  /// No operation takes much longer than `limit`, within which the user has to answer a prompt.
  explicit SecretServiceKeychainStore(std::chrono::milliseconds limit = std::chrono::minutes(1));
  ~SecretServiceKeychainStore() override;

  std::int32_t add(Key const& key, std::string const& bytes) override;
  std::int32_t replace(Key const& key, std::string const& bytes) override;
  std::int32_t read(Key const& key, std::string& bytes) override;
  std::int32_t remove(std::string const& service,
                      std::optional<std::string> const& account) override;
  std::int32_t list(std::string const& service, std::vector<std::string>& accounts) override;
  void forget() override;

 private:
  struct Answer {
    std::int32_t status = 0;
    std::string bytes = {};
    std::vector<std::string> accounts = {};
  };
  /// Must hold what it works on: it may outlast the call that asked for it.
  using Operation = std::function<void(SecretServiceSession&, Answer&)>;

  /// Runs `operation` on the thread, and gives up when time is up.
  Answer perform(Operation operation);
  /// For an operation that changes items, of which its own process hears at once.
  std::int32_t change(std::function<void(SecretServiceSession&)> operation);
  /// On the thread.
  Answer run(Operation const& operation, _GCancellable* cancellable);

  std::chrono::milliseconds limit_;
  std::mutex mutex_;
  std::map<Key, Answer> remembered_;
  bool isAbsent_ = false;
  SecretServiceBus bus_{[this] { forget(); }};
  GLibThread thread_{"secret-service"};
};

}  // namespace vek
