// SPDX-License-Identifier: MIT
#include "platform/Keychain.hpp"

#include <algorithm>
#include <array>
#include <mutex>
#include <string_view>

#include "platform/DesktopKeychainStore.hpp"

namespace vek {
namespace {

/// A dictionary, read: what it says of an item, or why it cannot be used.
struct Query {
  explicit Query(KeychainDictionary const& dictionary) {
    constexpr std::array<std::string_view, 7> known = {
        kSecClass,      kSecAttrService,      kSecAttrAccount, kSecValueData,
        kSecReturnData, kSecReturnAttributes, kSecMatchLimit};
    for (auto const& entry : dictionary) {
      if (std::ranges::find(known, entry.first) == known.end()) status = errSecUnimplemented;
    }
    take(dictionary, kSecClass, itemClass);
    take(dictionary, kSecAttrService, service);
    take(dictionary, kSecAttrAccount, account);
    take(dictionary, kSecValueData, value);
    take(dictionary, kSecReturnData, returnsData);
    take(dictionary, kSecReturnAttributes, returnsAttributes);
    take(dictionary, kSecMatchLimit, limit);
  }

  /// Whether it is about generic passwords of one service.
  [[nodiscard]] bool isAboutItems() const {
    return itemClass == kSecClassGenericPassword && service;
  }
  [[nodiscard]] KeychainStore::Key key() const { return {*service, *account}; }

  std::int32_t status = errSecSuccess;
  std::optional<std::string> itemClass;
  std::optional<std::string> service;
  std::optional<std::string> account;
  std::optional<Data> value;
  std::optional<bool> returnsData;
  std::optional<bool> returnsAttributes;
  std::optional<std::string> limit;

 private:
  template <class Value>
  void take(KeychainDictionary const& dictionary, char const* key, std::optional<Value>& place) {
    auto const found = dictionary.find(key);
    if (found == dictionary.end()) return;
    if (auto const* typed = std::get_if<Value>(&found->second)) {
      place = *typed;
    } else {
      status = errSecParam;
    }
  }
};

std::int32_t attributesOfAll(KeychainStore& store, std::string const& service,
                             KeychainResult& result) {
  std::vector<std::string> accounts;
  std::int32_t const status = store.list(service, accounts);
  if (status != errSecSuccess) return status;
  std::vector<KeychainDictionary> items;
  items.reserve(accounts.size());
  for (auto& account : accounts) {
    items.push_back({{kSecClass, kSecClassGenericPassword},
                     {kSecAttrService, service},
                     {kSecAttrAccount, std::move(account)}});
  }
  result = std::move(items);
  return status;
}

struct Shared {
  std::mutex mutex;
  std::optional<Keychain> keychain;
};

/// Never released: work that ends with the process may still use it.
Shared& sharedPlace() {
  static auto* const instance = new Shared;
  return *instance;
}

}  // namespace

Keychain Keychain::shared() {
  auto& place = sharedPlace();
  std::lock_guard const lock(place.mutex);
  if (!place.keychain) place.keychain.emplace(std::make_shared<DesktopKeychainStore>());
  return *place.keychain;
}

void Keychain::setShared(Keychain keychain) {
  auto& place = sharedPlace();
  std::lock_guard const lock(place.mutex);
  place.keychain = std::move(keychain);
}

std::int32_t Keychain::SecItemAdd(KeychainDictionary const& attributes) const {
  Query const item(attributes);
  if (item.status != errSecSuccess) return item.status;
  if (!item.isAboutItems() || !item.account || !item.value) return errSecParam;
  return store_->add(item.key(), item.value->bytes);
}

std::int32_t Keychain::SecItemUpdate(KeychainDictionary const& query,
                                     KeychainDictionary const& changes) const {
  Query const item(query);
  Query const change(changes);
  for (auto const* part : {&item, &change}) {
    if (part->status != errSecSuccess) return part->status;
  }
  if (!item.isAboutItems() || !item.account || !change.value) return errSecParam;
  return store_->replace(item.key(), change.value->bytes);
}

std::int32_t Keychain::SecItemCopyMatching(KeychainDictionary const& query,
                                           KeychainResult& result) const {
  Query const item(query);
  if (item.status != errSecSuccess) return item.status;
  if (!item.isAboutItems()) return errSecParam;
  if (item.returnsAttributes.value_or(false) && item.limit == kSecMatchLimitAll && !item.account) {
    return attributesOfAll(*store_, *item.service, result);
  }
  if (!item.account || item.returnsAttributes.value_or(false)) return errSecUnimplemented;
  std::string bytes;
  std::int32_t const status = store_->read(item.key(), bytes);
  if (status == errSecSuccess && item.returnsData.value_or(false)) result = Data{std::move(bytes)};
  return status;
}

std::int32_t Keychain::SecItemDelete(KeychainDictionary const& query) const {
  Query const items(query);
  if (items.status != errSecSuccess) return items.status;
  if (!items.isAboutItems()) return errSecParam;
  return store_->remove(*items.service, items.account);
}

}  // namespace vek
