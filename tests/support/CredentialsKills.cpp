// SPDX-License-Identifier: MIT
#include "support/CredentialsKills.hpp"

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <thread>
#include <utility>

#include "identity/CredentialsArchive.hpp"
#include "platform/DesktopKeychainStore.hpp"
#include "platform/Files.hpp"
#include "platform/Keychain.hpp"
#include "runtime/SyncWait.hpp"
#include "support/MarkedCredentials.hpp"

namespace vek::test {

namespace {

using namespace std::chrono_literals;

/// In milliseconds; about as long as it takes to store a record, or to renew it.
constexpr int shortLife = 60;

}  // namespace

CredentialsKills::CredentialsKills(Place place)
    : bus_("DBUS_SESSION_BUS_ADDRESS", service_.address()),
      data_("XDG_DATA_HOME", folder_.path().string()),
      manager_(managerFor(provider_.url(), provider_.authority.authority())),
      random_(std::random_device{}()) {
  if (place == Place::secretService) service_.start();
  Keychain::setShared(Keychain(std::make_shared<DesktopKeychainStore>()));
  if (!manager_.store(markedRecord(0, "refresh-0"))) throw std::runtime_error("nothing is kept");
}

ChildProcess CredentialsKills::startKeeper(std::string const& mode) const {
  return ChildProcess(
      {VEK_CREDENTIALS_KEEPER, mode, provider_.url(), provider_.authority.authority().string()},
      folder_ / "errors");
}

std::string CredentialsKills::kill(std::string const& mode, int times) {
  int longestLife = shortLife;
  int landed = 0;
  for (int i = 1; i <= times; ++i) {
    std::uniform_int_distribution<int> life(0, longestLife);
    auto const before = traces();
    {
      ChildProcess keeper = startKeeper(mode);
      if (!keeper.readLine()) return "The program did not begin.";
      std::this_thread::sleep_for(std::chrono::milliseconds(life(random_)));
    }
    if (traces() != before) {
      ++landed;
    } else {
      // Here it takes longer to begin.
      longestLife *= 2;
    }
    if (auto const broken = damage(); !broken.empty()) {
      return "After kill " + std::to_string(i) + ": " + broken + "\n" +
             readFile(folder_ / "errors").value_or("");
    }
  }
  if (landed == 0) return "Each program was killed before it had done anything.";
  return readFile(folder_ / "errors").value_or("");
}

/// What changes as soon as a program has stored or asked for something: the item, and the number of
/// requests.
std::pair<std::optional<std::string>, std::size_t> CredentialsKills::traces() const {
  Keychain::shared().forget();
  return {manager_.storage->readEntry(manager_.storeKey), provider_.server.received().size()};
}

/// What is wrong with the item, or with the login that it stands for.
std::string CredentialsKills::damage() const {
  Keychain::shared().forget();
  auto const bytes = manager_.storage->readEntry(manager_.storeKey);
  if (!bytes) return "There is no item.";
  auto const record = CredentialsArchive::unarchive(*bytes);
  if (!record) return "The item is no record.";
  auto const& mark = record->accessToken();
  bool const isWhole = mark.starts_with("access-") || record->idToken() == longTokenOf(mark);
  if (!isWhole) return "The record is mixed.";
  if (!provider_.isGood(record->refreshToken().value_or(""))) return "The refresh token is spent.";
  try {
    syncWait(manager_.credentials(scopeOfNoRecord));
    return "";
  } catch (std::exception const& error) {
    return error.what();
  }
}

std::pair<std::string, std::string> CredentialsKills::renewTwiceAtOnce() {
  auto record = Credentials({.accessToken = "ran-out",
                             .tokenType = "Bearer",
                             .expiresIn = std::chrono::system_clock::now() - 1s,
                             .refreshToken = "refresh-0"});
  if (!manager_.store(record)) return {};
  provider_.delay = 200ms;
  ChildProcess first = startKeeper("once");
  ChildProcess second = startKeeper("once");
  for (auto* keeper : {&first, &second}) {
    if (!keeper->readLine()) return {};
  }
  for (auto* keeper : {&first, &second}) keeper->write("\n");
  return {first.readLine().value_or("nothing"), second.readLine().value_or("nothing")};
}

}  // namespace vek::test
