// SPDX-License-Identifier: MIT
#include "Clients/CredentialsClientImpl.hpp"

#include "identity/CredentialsManagerError.hpp"
#include "platform/Deployment.hpp"
#include "platform/FileKeychainStore.hpp"
#include "platform/Files.hpp"
#include "platform/Keychain.hpp"
#include "runtime/SyncWait.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

TEST(CredentialsClient, KeepsTheOneItemOfThisProgram) {
  test::TemporaryFolder const folder;
  Keychain::setShared(Keychain(std::make_shared<FileKeychainStore>(folder / "keychain")));
  replaceFile(folder / "Auth0.plist",
              "<plist><dict><key>Domain</key><string>localhost</string><key>ClientId</key>"
              "<string>client</string></dict></plist>");
  auto const before = deployment();
  setDeployment({.authConfiguration = folder / "Auth0.plist"});
  auto const client = CredentialsClientKey::liveValue();
  auto const nextRun = CredentialsClientKey::liveValue();
  setDeployment(before);

  EXPECT_THROW(syncWait(client.credentials()), CredentialsManagerError);
  EXPECT_FALSE(syncWait(client.logOut()));
  Credentials const credentials(
      {.accessToken = "a",
       .tokenType = "Bearer",
       .expiresIn = std::chrono::system_clock::now() + std::chrono::minutes(1)});
  EXPECT_TRUE(syncWait(client.storeCredentials(credentials)));
  EXPECT_EQ(syncWait(nextRun.credentials()).accessToken(), "a");
  EXPECT_TRUE(std::filesystem::exists(folder / "keychain/com.vek.app/credentials"));
  EXPECT_TRUE(syncWait(nextRun.logOut()));
  EXPECT_THROW(syncWait(client.credentials()), CredentialsManagerError);
}

}  // namespace
}  // namespace vek
