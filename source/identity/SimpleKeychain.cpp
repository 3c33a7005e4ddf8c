// SPDX-License-Identifier: MIT
#include "identity/SimpleKeychain.hpp"

#include <array>

#include "identity/SimpleKeychainError.hpp"
#include "platform/Keychain.hpp"
#include "records/UTF8.hpp"

namespace vek {
namespace {

char const* constantOf(Accessibility accessibility) {
  constexpr std::array constants = {
      kSecAttrAccessibleWhenUnlocked,
      kSecAttrAccessibleWhenUnlockedThisDeviceOnly,
      kSecAttrAccessibleAfterFirstUnlock,
      kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly,
      kSecAttrAccessibleWhenPasscodeSetThisDeviceOnly,
  };
  return constants.at(static_cast<std::size_t>(accessibility));
}

bool isTrue(KeychainDictionary const& dictionary, char const* key) {
  auto const found = dictionary.find(key);
  return found != dictionary.end() && found->second == KeychainValue(true);
}

void require(std::int32_t status) {
  if (status != errSecSuccess) throw SimpleKeychainError(status);
}

}  // namespace

KeychainDictionary SimpleKeychain::baseQuery(std::optional<std::string_view> key,
                                             std::optional<std::string_view> value) const {
  KeychainDictionary query = attributes;
  query[kSecClass] = kSecClassGenericPassword;
  query[kSecAttrService] = service;
  if (key) query[kSecAttrAccount] = std::string(*key);
  if (value) query[kSecValueData] = Data{std::string(*value)};
  if (accessGroup) query[kSecAttrAccessGroup] = *accessGroup;
  if (context) query[kSecUseAuthenticationContext] = *context;
  if (isSynchronizable) query[kSecAttrSynchronizable] = true;
  return query;
}

KeychainDictionary SimpleKeychain::readQuery(std::string_view key) const {
  auto query = baseQuery(key);
  query[kSecReturnData] = true;
  query[kSecMatchLimit] = kSecMatchLimitOne;
  return query;
}

KeychainDictionary SimpleKeychain::addQuery(std::string_view key, std::string_view value) const {
  auto query = baseQuery(key, value);
  auto const* const accessible = constantOf(accessibility);
  if (accessControlFlags) {
    auto control = Keychain::SecAccessControlCreateWithFlags(accessible, *accessControlFlags);
    if (control) {
      query[kSecAttrAccessControl] = std::move(*control);
      return query;
    }
  }
  if (!isSynchronizable && !isTrue(attributes, kSecUseDataProtectionKeychain)) return query;
  query[kSecAttrAccessible] = accessible;
  return query;
}

void SimpleKeychain::writeData(std::string_view value, std::string_view key) const {
  auto const keychain = Keychain::shared();
  std::int32_t const added = keychain.SecItemAdd(addQuery(key, value));
  if (added != errSecDuplicateItem) return require(added);
  require(keychain.SecItemUpdate(baseQuery(key), {{kSecValueData, Data{std::string(value)}}}));
}

void SimpleKeychain::writeString(std::string_view value, std::string_view key) const {
  writeData(value, key);
}

std::string SimpleKeychain::readData(std::string_view key) const {
  KeychainResult result;
  require(retrieve(readQuery(key), result));
  auto* const data = std::get_if<Data>(&result);
  if (!data) {
    throw SimpleKeychainError::unknown("Unable to cast the retrieved item to a Data value");
  }
  return std::move(data->bytes);
}

std::string SimpleKeychain::readString(std::string_view key) const {
  auto bytes = readData(key);
  if (!isUTF8(bytes)) {
    throw SimpleKeychainError::unknown("Unable to convert the retrieved item to a String value");
  }
  return bytes;
}

void SimpleKeychain::removeItem(std::string_view key) const {
  require(remove(baseQuery(key)));
}

void SimpleKeychain::removeAll() const {
  auto query = baseQuery();
  query[kSecMatchLimit] = kSecMatchLimitAll;
  std::int32_t const status = remove(query);
  if (status != errSecItemNotFound) require(status);
}

bool SimpleKeychain::containsItem(std::string_view key) const {
  KeychainResult result;
  std::int32_t const status = retrieve(baseQuery(key), result);
  if (status == errSecItemNotFound) return false;
  require(status);
  return true;
}

std::vector<std::string> SimpleKeychain::listKeys() const {
  auto query = baseQuery();
  query[kSecReturnAttributes] = true;
  query[kSecMatchLimit] = kSecMatchLimitAll;
  KeychainResult result;
  std::int32_t const status = retrieve(query, result);
  if (status == errSecItemNotFound) return {};
  require(status);
  auto const* const items = std::get_if<std::vector<KeychainDictionary>>(&result);
  if (!items) {
    throw SimpleKeychainError::unknown(
        "Unable to cast the retrieved items to a [[String: Any]] value");
  }
  std::vector<std::string> keys;
  for (auto const& item : *items) {
    auto const account = item.find(kSecAttrAccount);
    if (account == item.end()) continue;
    if (auto const* key = std::get_if<std::string>(&account->second)) keys.push_back(*key);
  }
  return keys;
}

std::optional<std::string> SimpleKeychain::readEntry(std::string_view key) const {
  try {
    return readData(key);
  } catch (SimpleKeychainError const&) {
    return std::nullopt;
  }
}

bool SimpleKeychain::writeEntry(std::string_view bytes, std::string_view key) const {
  try {
    writeData(bytes, key);
    return true;
  } catch (SimpleKeychainError const&) {
    return false;
  }
}

bool SimpleKeychain::removeEntry(std::string_view key) const {
  try {
    removeItem(key);
    return true;
  } catch (SimpleKeychainError const&) {
    return false;
  }
}

std::int32_t SimpleKeychain::copyMatching(KeychainDictionary const& query, KeychainResult& result) {
  return Keychain::shared().SecItemCopyMatching(query, result);
}

std::int32_t SimpleKeychain::deleteItems(KeychainDictionary const& query) {
  return Keychain::shared().SecItemDelete(query);
}

}  // namespace vek
