// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vek {

/// Where credentials are kept. No operation throws; all may block, on any thread.
class CredentialsStorage {
 public:
  CredentialsStorage() = default;
  CredentialsStorage(CredentialsStorage const&) = default;
  CredentialsStorage& operator=(CredentialsStorage const&) = default;
  virtual ~CredentialsStorage() = default;

  /// The bytes of an entry; nothing when there is none or it cannot be read.
  [[nodiscard]] virtual std::optional<std::string> readEntry(std::string_view key) const = 0;
  /// Whether they are stored now.
  virtual bool writeEntry(std::string_view bytes, std::string_view key) const = 0;
  /// Whether there was one and it is gone now.
  virtual bool removeEntry(std::string_view key) const = 0;
};

}  // namespace vek
