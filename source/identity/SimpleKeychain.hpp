// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "identity/CredentialsStorage.hpp"
#include "platform/KeychainDictionary.hpp"

namespace vek {

/// When an item can be read.
enum class Accessibility : std::uint8_t {
  whenUnlocked,
  whenUnlockedThisDeviceOnly,
  afterFirstUnlock,
  afterFirstUnlockThisDeviceOnly,
  whenPasscodeSetThisDeviceOnly,
};

/// The items of one service in the process's keychain, a value for each key. Throws
/// SimpleKeychainError, except as a CredentialsStorage.
class SimpleKeychain final : public CredentialsStorage {
 public:
  /// Both give a status of the keychain.
  using RetrieveFunction = std::function<std::int32_t(KeychainDictionary const&, KeychainResult&)>;
  using RemoveFunction = std::function<std::int32_t(KeychainDictionary const&)>;

  explicit SimpleKeychain(std::string serviceName) : service(std::move(serviceName)) {}

  std::string service;
  std::optional<std::string> accessGroup = {};
  Accessibility accessibility = Accessibility::afterFirstUnlock;
  std::optional<std::uint32_t> accessControlFlags = {};
  bool isSynchronizable = false;
  /// What every query starts from.
  KeychainDictionary attributes = {};
  /// The keychain's own unless another is put here.
  RetrieveFunction retrieve = copyMatching;
  RemoveFunction remove = deleteItems;
  std::optional<AuthenticationContext> context = {};

  [[nodiscard]] std::string readString(std::string_view key) const;
  [[nodiscard]] std::string readData(std::string_view key) const;
  void writeString(std::string_view value, std::string_view key) const;
  /// Puts the value in the place of the one that the key had, if any.
  void writeData(std::string_view value, std::string_view key) const;
  void removeItem(std::string_view key) const;
  void removeAll() const;
  [[nodiscard]] bool containsItem(std::string_view key) const;
  [[nodiscard]] std::vector<std::string> listKeys() const;

  [[nodiscard]] std::optional<std::string> readEntry(std::string_view key) const override;
  bool writeEntry(std::string_view bytes, std::string_view key) const override;
  bool removeEntry(std::string_view key) const override;

  [[nodiscard]] KeychainDictionary baseQuery(std::optional<std::string_view> key = {},
                                             std::optional<std::string_view> value = {}) const;
  [[nodiscard]] KeychainDictionary readQuery(std::string_view key) const;
  [[nodiscard]] KeychainDictionary addQuery(std::string_view key, std::string_view value) const;

 private:
  static std::int32_t copyMatching(KeychainDictionary const& query, KeychainResult& result);
  static std::int32_t deleteItems(KeychainDictionary const& query);
};

}  // namespace vek
