// SPDX-License-Identifier: MIT
// Asks for valid credentials 10,000 times, beside a store that remembers nothing, and counts the
// calls to the Secret Service; then lets 1,000 callers ask at once for credentials that have run
// out, and counts the renewals.
//
//     CredentialsBenchmark     exit status 1 when a bound is not kept

#include <fmt/format.h>

#include <chrono>
#include <memory>
#include <vector>

#include "platform/DesktopKeychainStore.hpp"
#include "platform/Keychain.hpp"
#include "runtime/SyncWait.hpp"
#include "runtime/WhenAll.hpp"
#include "support/Environment.hpp"
#include "support/MarkedCredentials.hpp"
#include "support/RotatingProvider.hpp"
#include "support/SecretService.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;

constexpr int requests = 10'000;
constexpr int callers = 1'000;
/// Of a retrieval that asks the store anew; what the memory is for.
constexpr double largestShare = 0.1;

template <class Work>
double secondsOf(Work work) {
  auto const begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

struct Surroundings {
  test::TemporaryFolder folder;
  test::SecretService service;
  test::EnvironmentVariable bus{"DBUS_SESSION_BUS_ADDRESS", service.address()};
  test::EnvironmentVariable data{"XDG_DATA_HOME", folder.path().string()};
  test::RotatingProvider provider;
  CredentialsManager manager = test::managerFor(provider.url(), provider.authority.authority());
};

void require(bool holds, char const* what) {
  if (!holds) throw std::runtime_error(what);
}

/// Microseconds of one retrieval.
double retrievals(CredentialsManager const& manager, int count, bool isForgetting) {
  double const seconds = secondsOf([&] {
    for (int i = 0; i < count; ++i) {
      if (isForgetting) Keychain::shared().forget();
      syncWait(manager.credentials());
    }
  });
  return seconds / count * 1e6;
}

bool measureService(Surroundings& surroundings) {
  auto const& manager = surroundings.manager;
  require(manager.store(test::markedRecord(1, "refresh-0")), "nothing was stored");
  syncWait(manager.credentials());
  // Word of the change may come after the read, which is then done once more.
  std::this_thread::sleep_for(200ms);
  syncWait(manager.credentials());
  test::SecretServiceCalls calls(surroundings.service);
  int const before = calls.count();
  double const remembered = retrievals(manager, requests, false);
  int const made = calls.count() - before;
  double const anew = retrievals(manager, requests / 100, true);
  fmt::print(
      "in the Secret Service: {:.1f} us a retrieval, {} bus calls for {} (at most 0); asked "
      "anew {:.1f} us, share {:.3f} (at most {})\n",
      remembered, made, requests, anew, remembered / anew, largestShare);
  return made == 0 && remembered / anew <= largestShare;
}

void measureFiles(Surroundings& surroundings) {
  require(surroundings.manager.store(test::markedRecord(1, "refresh-0")), "nothing was stored");
  fmt::print("in files: {:.1f} us a retrieval\n",
             retrievals(surroundings.manager, requests, false));
}

bool measureCallers(Surroundings& surroundings) {
  auto const& manager = surroundings.manager;
  require(manager.store(Credentials({.accessToken = "ran out",
                                     .tokenType = "Bearer",
                                     .expiresIn = std::chrono::system_clock::now() - 1s,
                                     .refreshToken = "refresh-0"})),
          "nothing was stored");
  double const seconds = secondsOf([&] {
    std::vector<Task<Credentials>> tasks;
    tasks.reserve(callers);
    for (int i = 0; i < callers; ++i) tasks.push_back(manager.credentials());
    syncWait(whenAll(std::move(tasks)));
  });
  int const renewals = surroundings.provider.renewals();
  fmt::print("{} callers at once: {} renewals (at most 1), {:.3f} s\n", callers, renewals, seconds);
  return renewals == 1;
}

bool run(bool hasService) {
  Surroundings surroundings;
  if (hasService) surroundings.service.start();
  Keychain::setShared(Keychain(std::make_shared<DesktopKeychainStore>()));
  if (!hasService) measureFiles(surroundings);
  bool const isRemembered = !hasService || measureService(surroundings);
  return measureCallers(surroundings) && isRemembered;
}

}  // namespace
}  // namespace vek

int main() {
  try {
    bool const isServiceGood = vek::run(true);
    return vek::run(false) && isServiceGood ? 0 : 1;
  } catch (std::exception const& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
}
