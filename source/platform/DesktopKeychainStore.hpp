// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <filesystem>

#include "platform/FileKeychainStore.hpp"
#include "platform/SecretServiceKeychainStore.hpp"

namespace vek {

/// The desktop's Secret Service, or files where none runs. A service that has once answered this
/// process is never replaced by files: while it is away, operations fail. What was kept in files at
/// a time without a service moves into it.
class DesktopKeychainStore final : public KeychainStore {
 public:
  /// Files go into the folder of the user's data unless another one is named.
  DesktopKeychainStore();
  explicit DesktopKeychainStore(std::filesystem::path folder) : files_(std::move(folder)) {}

  std::int32_t add(Key const& key, std::string const& bytes) override;
  std::int32_t replace(Key const& key, std::string const& bytes) override;
  std::int32_t read(Key const& key, std::string& bytes) override;
  /// In the files too.
  std::int32_t remove(std::string const& service,
                      std::optional<std::string> const& account) override;
  std::int32_t list(std::string const& service, std::vector<std::string>& accounts) override;
  void forget() override { service_.forget(); }

 private:
  template <class Operation>
  std::int32_t perform(Operation operation);
  std::int32_t kept(Key const& key, std::int32_t status);

  std::atomic<bool> hasService_ = false;
  SecretServiceKeychainStore service_;
  FileKeychainStore files_;
};

}  // namespace vek
