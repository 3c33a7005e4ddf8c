// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace vek::services {

/// The scripts that bring the identity provider's database from each version to the next. A script
/// that was released is never changed. Dates are seconds since 1970. Of codes and refresh tokens
/// only the hashes are kept.
///
/// A grant is what one sign-in allows a client. Each of its refresh tokens was given out for its
/// parent (0 for the first), and `current_token` is the one used last: it and its children are
/// good, any other has been replaced.
inline constexpr std::array identitySchema = {R"sql(
  CREATE TABLE accounts (
    key INTEGER PRIMARY KEY,
    subject TEXT NOT NULL UNIQUE,
    name TEXT NOT NULL UNIQUE,
    email TEXT NOT NULL,
    user INTEGER NOT NULL,
    salt TEXT NOT NULL,
    hash TEXT NOT NULL,
    cost INTEGER NOT NULL,
    block_size INTEGER NOT NULL,
    lanes INTEGER NOT NULL
  );
  CREATE TABLE signing_keys (
    id TEXT PRIMARY KEY,
    created INTEGER NOT NULL,
    pem TEXT NOT NULL
  ) WITHOUT ROWID;
  CREATE TABLE codes (
    hash TEXT PRIMARY KEY,
    account INTEGER NOT NULL REFERENCES accounts ON DELETE CASCADE,
    client TEXT NOT NULL,
    redirect_url TEXT NOT NULL,
    challenge TEXT NOT NULL,
    scope TEXT NOT NULL,
    nonce TEXT,
    issued INTEGER NOT NULL,
    is_spent INTEGER NOT NULL DEFAULT 0
  ) WITHOUT ROWID;
  CREATE TABLE grants (
    key INTEGER PRIMARY KEY,
    id TEXT NOT NULL UNIQUE,
    code TEXT NOT NULL UNIQUE,
    account INTEGER NOT NULL REFERENCES accounts ON DELETE CASCADE,
    client TEXT NOT NULL,
    scope TEXT NOT NULL,
    signed_in INTEGER NOT NULL,
    last_used INTEGER NOT NULL,
    current_token INTEGER NOT NULL DEFAULT 0
  );
  CREATE TABLE refresh_tokens (
    key INTEGER PRIMARY KEY,
    hash TEXT NOT NULL UNIQUE,
    grant_key INTEGER NOT NULL REFERENCES grants ON DELETE CASCADE,
    parent INTEGER NOT NULL
  );
  CREATE INDEX tokens_of_grant ON refresh_tokens (grant_key);
)sql"};

}  // namespace vek::services
