// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vek {

/// Where a keychain keeps its items: one blob for each service and account, out of reach of other
/// users. Any thread may call, and waits; every operation gives a status of the keychain.
class KeychainStore {
 public:
  struct Key {
    std::string service;
    std::string account;
    auto operator<=>(Key const&) const = default;
  };

  KeychainStore() = default;
  KeychainStore(KeychainStore const&) = delete;
  KeychainStore& operator=(KeychainStore const&) = delete;
  virtual ~KeychainStore() = default;

  /// errSecDuplicateItem when there is such an item.
  virtual std::int32_t add(Key const& key, std::string const& bytes) = 0;
  /// errSecItemNotFound when there is none. Whoever reads finds the old bytes or the new.
  virtual std::int32_t replace(Key const& key, std::string const& bytes) = 0;
  virtual std::int32_t read(Key const& key, std::string& bytes) = 0;
  /// Removes the item of this account, or those of all.
  virtual std::int32_t remove(std::string const& service,
                              std::optional<std::string> const& account) = 0;
  /// The accounts that have an item; errSecItemNotFound when none has.
  virtual std::int32_t list(std::string const& service, std::vector<std::string>& accounts) = 0;
  /// Makes the next reads ask anew what an earlier one has remembered.
  virtual void forget() {}
};

}  // namespace vek
