// SPDX-License-Identifier: MIT
#include "platform/FileKeychainStore.hpp"

#include <chrono>
#include <system_error>

#include "platform/Files.hpp"
#include "platform/KeychainStatus.hpp"
#include "platform/Log.hpp"

namespace vek {
namespace {

/// A writer holds the lock for as long as one file takes.
constexpr std::chrono::seconds patience{10};
constexpr std::size_t longestName = 200;

/// Whether a service or an account can name a file. What begins with a dot is the lock, or was left
/// by a writer that was killed.
bool isFileName(std::string_view name) {
  return !name.empty() && name.size() <= longestName && name.front() != '.' &&
         name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

template <class Visit>
void forEachFile(std::filesystem::path const& folder, Visit visit) {
  std::error_code missing;
  for (auto const& entry : std::filesystem::directory_iterator(folder, missing)) {
    visit(entry.path());
  }
}

/// The right to change the items of one service; takes away what killed writers have left.
class Writing {
 public:
  explicit Writing(std::filesystem::path const& folder) : lock_(folder / lockName, patience) {
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    forEachFile(folder, [](std::filesystem::path const& file) {
      auto const name = file.filename().string();
      if (name.starts_with('.') && name != lockName) std::filesystem::remove(file);
    });
  }

 private:
  static constexpr char const* lockName = ".lock";

  FileLock lock_;
};

/// The status that `operation` gives, or that of the error which it throws.
template <class Operation>
std::int32_t guarded(Operation operation) {
  try {
    return operation();
  } catch (std::system_error const& error) {
    Logger("Keychain").error(std::string("The file of an item cannot be used: ") + error.what());
    return errSecIO;
  }
}

}  // namespace

std::int32_t FileKeychainStore::add(Key const& key, std::string const& bytes) {
  if (!isFileName(key.service) || !isFileName(key.account)) return errSecParam;
  return guarded([&] {
    auto const folder = folder_ / key.service;
    Writing const writing(folder);
    if (std::filesystem::exists(folder / key.account)) return errSecDuplicateItem;
    replaceFile(folder / key.account, bytes);
    return errSecSuccess;
  });
}

std::int32_t FileKeychainStore::replace(Key const& key, std::string const& bytes) {
  if (!isFileName(key.service) || !isFileName(key.account)) return errSecItemNotFound;
  return guarded([&] {
    auto const folder = folder_ / key.service;
    Writing const writing(folder);
    if (!std::filesystem::exists(folder / key.account)) return errSecItemNotFound;
    replaceFile(folder / key.account, bytes);
    return errSecSuccess;
  });
}

std::int32_t FileKeychainStore::read(Key const& key, std::string& bytes) {
  if (!isFileName(key.service) || !isFileName(key.account)) return errSecItemNotFound;
  return guarded([&] {
    auto content = readFile(folder_ / key.service / key.account);
    if (!content) return errSecItemNotFound;
    bytes = std::move(*content);
    return errSecSuccess;
  });
}

std::int32_t FileKeychainStore::remove(std::string const& service,
                                       std::optional<std::string> const& account) {
  if (!isFileName(service)) return errSecItemNotFound;
  return guarded([&] {
    auto const folder = folder_ / service;
    if (!std::filesystem::exists(folder)) return errSecItemNotFound;
    Writing const writing(folder);
    std::vector<std::string> accounts;
    if (auto const status = list(service, accounts); status != errSecSuccess) return status;
    bool isAnyRemoved = false;
    for (auto const& each : accounts) {
      if (account && each != *account) continue;
      isAnyRemoved |= std::filesystem::remove(folder / each);
    }
    return isAnyRemoved ? errSecSuccess : errSecItemNotFound;
  });
}

std::int32_t FileKeychainStore::list(std::string const& service,
                                     std::vector<std::string>& accounts) {
  if (!isFileName(service)) return errSecItemNotFound;
  return guarded([&] {
    forEachFile(folder_ / service, [&](std::filesystem::path const& file) {
      auto name = file.filename().string();
      if (!name.starts_with('.')) accounts.push_back(std::move(name));
    });
    return accounts.empty() ? errSecItemNotFound : errSecSuccess;
  });
}

}  // namespace vek
