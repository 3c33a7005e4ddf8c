// SPDX-License-Identifier: MIT
#include "Clients/CredentialsClientImpl.hpp"

#include <memory>
#include <utility>

#include "identity/SimpleKeychain.hpp"
#include "platform/Bundle.hpp"
#include "platform/FatalError.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {
namespace {

Task<bool> store(CredentialsManager manager, Credentials credentials) {
  co_return manager.store(credentials);
}

Task<bool> removeEntry(CredentialsManager manager) {
  co_return manager.storage->removeEntry(manager.storeKey);
}

}  // namespace

CredentialsClient credentialsClientOf(CredentialsManager manager) {
  return {.storeCredentials =
              [manager](Credentials credentials) {
                return on(ThreadPool::shared(), store(manager, std::move(credentials)));
              },
          .credentials = [manager] { return manager.credentials(); },
          .logOut = [manager] { return on(ThreadPool::shared(), removeEntry(manager)); }};
}

CredentialsClient CredentialsClientKey::liveValue() {
  auto authentication = Auth0Authentication::ofMainBundle();
  auto identifier = Bundle::main().bundleIdentifier;
  if (!identifier) fatalError("The main bundle has no identifier!");
  return credentialsClientOf(
      {.storage = std::make_shared<SimpleKeychain const>(std::move(*identifier)),
       .storeKey = "credentials",
       .authentication = std::move(authentication)});
}

}  // namespace vek
