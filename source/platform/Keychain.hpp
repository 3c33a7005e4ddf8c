// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/KeychainDictionary.hpp"
#include "platform/KeychainStatus.hpp"
#include "platform/KeychainStore.hpp"

namespace vek {

/// The user's secrets: items of the class kSecClassGenericPassword, each one blob for a service and
/// an account. All operations may block, be called on any thread, and give 0 or why they failed:
/// errSecUnimplemented for a key that no store on this system can honour, so that nothing is kept
/// with less protection than was asked for. Copies are the same keychain.
class Keychain {
 public:
  explicit Keychain(std::shared_ptr<KeychainStore> store) : store_(std::move(store)) {}

  /// The one of this process: the desktop's Secret Service, or files where no service runs.
  static Keychain shared();
  /// Puts another in its place, for tests.
  static void setShared(Keychain keychain);

  /// Creates an item. errSecDuplicateItem when its service and account have one.
  [[nodiscard]] std::int32_t SecItemAdd(KeychainDictionary const& attributes) const;
  /// Puts the value of `changes` in the place of the matching item's.
  [[nodiscard]] std::int32_t SecItemUpdate(KeychainDictionary const& query,
                                           KeychainDictionary const& changes) const;
  /// Finds items, and gives what the query's return keys ask for.
  [[nodiscard]] std::int32_t SecItemCopyMatching(KeychainDictionary const& query,
                                                 KeychainResult& result) const;
  /// Removes the items that match.
  [[nodiscard]] std::int32_t SecItemDelete(KeychainDictionary const& query) const;

  /// What is to guard an item.
  static std::optional<AccessControl> SecAccessControlCreateWithFlags(std::string protection,
                                                                      std::uint32_t flags) {
    return AccessControl{std::move(protection), flags};
  }

  /// Makes the next read ask the store, whatever is remembered.
  void forget() const { store_->forget(); }

 private:
  std::shared_ptr<KeychainStore> store_;
};

}  // namespace vek
