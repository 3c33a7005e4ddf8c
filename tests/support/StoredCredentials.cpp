// SPDX-License-Identifier: MIT
#include "support/StoredCredentials.hpp"

#include <chrono>
#include <memory>
#include <stdexcept>

#include "identity/CredentialsArchive.hpp"
#include "platform/FileKeychainStore.hpp"
#include "platform/Keychain.hpp"

namespace vek::test {

namespace {

constexpr auto* keychainFolder = "vek/keychain";

}  // namespace

void storeCredentials(LocalServices const& services, std::filesystem::path const& dataHome) {
  auto const& tokens = services.tokens();
  Credentials const credentials(
      {.accessToken = tokens.accessToken,
       .tokenType = tokens.tokenType,
       .expiresIn = std::chrono::system_clock::now() + std::chrono::seconds(tokens.expiresIn),
       .refreshToken = tokens.refreshToken,
       .idToken = tokens.idToken,
       .scope = tokens.scope});
  FileKeychainStore store(dataHome / keychainFolder);
  auto const status = store.add({.service = "com.vek.app", .account = "credentials"},
                                CredentialsArchive::archive(credentials).value());
  if (status != errSecSuccess) throw std::runtime_error("the credentials were not stored");
}

SignedInProcess::SignedInProcess(LocalServices const& services) {
  storeCredentials(services, folder_.path());
  Keychain::setShared(Keychain(std::make_shared<FileKeychainStore>(folder_ / keychainFolder)));
}

}  // namespace vek::test
