// SPDX-License-Identifier: MIT
#include "platform/DesktopKeychainStore.hpp"

#include "platform/Folders.hpp"
#include "platform/KeychainStatus.hpp"

namespace vek {

DesktopKeychainStore::DesktopKeychainStore() : DesktopKeychainStore(dataHome() / "vek/keychain") {}

template <class Operation>
std::int32_t DesktopKeychainStore::perform(Operation operation) {
  std::int32_t const status = operation(service_);
  if (status != errSecNotAvailable) hasService_ = true;
  return hasService_ ? status : operation(files_);
}

/// What the service has taken must not stay in a file as well.
std::int32_t DesktopKeychainStore::kept(Key const& key, std::int32_t status) {
  if (hasService_ && status == errSecSuccess) files_.remove(key.service, key.account);
  return status;
}

std::int32_t DesktopKeychainStore::add(Key const& key, std::string const& bytes) {
  return kept(key, perform([&](KeychainStore& store) { return store.add(key, bytes); }));
}

std::int32_t DesktopKeychainStore::replace(Key const& key, std::string const& bytes) {
  return kept(key, perform([&](KeychainStore& store) { return store.replace(key, bytes); }));
}

std::int32_t DesktopKeychainStore::read(Key const& key, std::string& bytes) {
  std::int32_t const status = perform([&](KeychainStore& store) { return store.read(key, bytes); });
  if (!hasService_ || status != errSecItemNotFound) return status;
  std::int32_t const ofFiles = files_.read(key, bytes);
  // Where the service does not take it, the file is good for longer.
  if (ofFiles == errSecSuccess) kept(key, service_.add(key, bytes));
  return ofFiles;
}

std::int32_t DesktopKeychainStore::remove(std::string const& service,
                                          std::optional<std::string> const& account) {
  std::int32_t const status =
      perform([&](KeychainStore& store) { return store.remove(service, account); });
  if (!hasService_) return status;
  std::int32_t const ofFiles = files_.remove(service, account);
  bool const isGone = status == errSecSuccess || status == errSecItemNotFound;
  return isGone && ofFiles != errSecItemNotFound ? ofFiles : status;
}

std::int32_t DesktopKeychainStore::list(std::string const& service,
                                        std::vector<std::string>& accounts) {
  return perform([&](KeychainStore& store) { return store.list(service, accounts); });
}

}  // namespace vek
