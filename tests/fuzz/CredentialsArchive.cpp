// SPDX-License-Identifier: MIT
// The bytes of the keychain's one item.
#include "identity/CredentialsArchive.hpp"

#include "FuzzInput.hpp"

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace vek;
  auto const read = CredentialsArchive::unarchive(test::text(data, size));
  if (!read) return 0;
  test::expect(read->description().find("<REDACTED>") != std::string::npos);
  auto const bytes = CredentialsArchive::archive(*read);
  if (!bytes) return 0;  // with what is escaped it may be too long
  auto const again = CredentialsArchive::unarchive(*bytes);
  test::expect(again && again->accessToken() == read->accessToken() &&
               again->tokenType() == read->tokenType() && again->idToken() == read->idToken() &&
               again->expiresIn() == read->expiresIn() && again->scope() == read->scope() &&
               again->refreshToken() == read->refreshToken() &&
               again->recoveryCode() == read->recoveryCode());
  return 0;
}
