// SPDX-License-Identifier: MIT
#include "Clients/AccessTokenFile.hpp"

#include "identity/CredentialsManagerError.hpp"
#include "platform/Files.hpp"
#include "runtime/SyncWait.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

TEST(AccessTokenFile, IsReadAtEachUse) {
  test::TemporaryFolder const folder;
  auto const client = credentialsFromAccessTokenFile(folder / "token");
  auto const failure = [&] {
    try {
      return syncWait(client.credentials()).accessToken();
    } catch (CredentialsManagerError const& error) {
      return std::string(error.what());
    }
  };
  std::string const none = "No credentials were found in the store.";
  EXPECT_EQ(failure(), none);
  replaceFile(folder / "token", " \n");
  EXPECT_EQ(failure(), none);
  replaceFile(folder / "token", "abc.def\n");
  EXPECT_EQ(failure(), "abc.def");
  replaceFile(folder / "token", "ghi");
  EXPECT_EQ(failure(), "ghi");
}

TEST(Credentials, TextShowsNoSecretAndObjectsAreTheirOwn) {
  Credentials const credentials({.accessToken = "secret1",
                                 .tokenType = "Bearer",
                                 .expiresIn = {},
                                 .refreshToken = "secret2",
                                 .idToken = "secret3",
                                 .scope = "openid",
                                 .recoveryCode = "secret4"});
  EXPECT_THAT(credentials.description(),
              testing::AllOf(testing::Not(testing::HasSubstr("secret")),
                             testing::HasSubstr("accessToken: <REDACTED>"),
                             testing::HasSubstr("scope: openid")));
  Credentials const copy = credentials;
  EXPECT_EQ(copy, credentials);
  EXPECT_NE(Credentials({.accessToken = "a", .tokenType = "b", .expiresIn = {}}),
            Credentials({.accessToken = "a", .tokenType = "b", .expiresIn = {}}));
}

TEST(CredentialsManagerError, ShowsItsCause) {
  using Code = CredentialsManagerError::Code;
  CredentialsManagerError const error(Code::renewFailed,
                                      std::make_exception_ptr(std::runtime_error("No network.")));
  EXPECT_STREQ(error.what(), "The credentials renewal failed. CAUSE: No network.");
}

}  // namespace
}  // namespace vek
