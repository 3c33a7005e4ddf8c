// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "platform/KeychainStore.hpp"

namespace vek {

/// Keeps items where no Secret Service runs: a folder a service and a file an item, which the user
/// alone may read. Read anew each time, since that costs less than a check whether it may be old.
class FileKeychainStore final : public KeychainStore {
 public:
  /// The folder is made with the first item.
  explicit FileKeychainStore(std::filesystem::path folder) : folder_(std::move(folder)) {}

  std::int32_t add(Key const& key, std::string const& bytes) override;
  std::int32_t replace(Key const& key, std::string const& bytes) override;
  std::int32_t read(Key const& key, std::string& bytes) override;
  std::int32_t remove(std::string const& service,
                      std::optional<std::string> const& account) override;
  std::int32_t list(std::string const& service, std::vector<std::string>& accounts) override;

 private:
  std::filesystem::path folder_;
};

}  // namespace vek
