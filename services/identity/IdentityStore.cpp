// SPDX-License-Identifier: MIT
#include "services/identity/IdentityStore.hpp"

#include "runtime/UUID.hpp"
#include "services/identity/IdentitySchema.hpp"

namespace vek::services {

namespace {

/// Codes are remembered for longer than they hold, so that a late second use is seen as such.
constexpr std::chrono::hours codeMemory{24};

std::int64_t seconds(Date date) {
  return std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
}

Date date(std::int64_t seconds) {
  return Date(std::chrono::seconds(seconds));
}

std::optional<std::string> optionalText(Rows const& rows, int column) {
  if (rows.isNull(column)) return std::nullopt;
  return std::string(rows.text(column));
}

}  // namespace

IdentityStore::IdentityStore(std::filesystem::path const& file, std::chrono::seconds idleLifetime)
    : idleLifetime_(idleLifetime),
      writer_(file, Database::Access::readWrite),
      reader_(file, Database::Access::readOnly) {
  writer_.migrate(identitySchema);
}

bool IdentityStore::hasAccounts() {
  std::lock_guard lock(reading_);
  return reader_.query("SELECT 1 FROM accounts").next();
}

void IdentityStore::addAccount(Account const& account, PasswordHash const& password) {
  std::lock_guard lock(writing_);
  writer_.run(
      "INSERT INTO accounts (subject, name, email, user, salt, hash, cost, block_size, lanes) "
      "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)",
      account.subject, account.name, account.email, std::int64_t(account.user), password.salt,
      password.hash, password.cost, password.blockSize, password.lanes);
}

std::optional<IdentityStore::Login> IdentityStore::login(std::string_view name) {
  std::lock_guard lock(reading_);
  auto rows = reader_.query(
      "SELECT key, salt, hash, cost, block_size, lanes FROM accounts WHERE name = ?1", name);
  if (!rows.next()) return std::nullopt;
  return Login{.accountKey = rows.integer(0),
               .password = {.salt = std::string(rows.text(1)),
                            .hash = std::string(rows.text(2)),
                            .cost = rows.integer(3),
                            .blockSize = rows.integer(4),
                            .lanes = rows.integer(5)}};
}

void IdentityStore::addCode(std::string const& code, std::int64_t accountKey,
                            AuthorizationRequest const& request, Date now) {
  std::lock_guard lock(writing_);
  Transaction transaction(writer_);
  writer_.run("DELETE FROM codes WHERE issued < ?1", seconds(now - codeMemory));
  writer_.run(
      "INSERT INTO codes (hash, account, client, redirect_url, challenge, scope, nonce, issued) "
      "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)",
      code, accountKey, request.client, request.redirectURL, request.challenge, request.scope,
      request.nonce, seconds(now));
  transaction.commit();
}

std::optional<IdentityStore::Code> IdentityStore::spendCode(std::string const& code) {
  std::lock_guard lock(writing_);
  Transaction transaction(writer_);
  auto const found = [&]() -> std::optional<Code> {
    auto rows = writer_.query(
        "SELECT account, client, redirect_url, challenge, scope, nonce, issued FROM codes "
        "WHERE hash = ?1 AND NOT is_spent",
        code);
    if (!rows.next()) return std::nullopt;
    return Code{.accountKey = rows.integer(0),
                .request = {.client = std::string(rows.text(1)),
                            .redirectURL = std::string(rows.text(2)),
                            .challenge = std::string(rows.text(3)),
                            .scope = std::string(rows.text(4)),
                            .nonce = optionalText(rows, 5),
                            .state = {}},
                .issued = date(rows.integer(6))};
  }();
  if (found) {
    writer_.run("UPDATE codes SET is_spent = 1 WHERE hash = ?1", code);
  } else {
    writer_.run("DELETE FROM grants WHERE code = ?1", code);
  }
  transaction.commit();
  return found;
}

Grant IdentityStore::addGrant(std::string const& code, Code const& spent,
                              std::string const& refreshToken, Date now) {
  std::lock_guard lock(writing_);
  Transaction transaction(writer_);
  removeIdleGrants(now);
  writer_.run(
      "INSERT INTO grants (id, code, account, client, scope, signed_in, last_used) "
      "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)",
      UUID::random().lowerCaseText(), code, spent.accountKey, spent.request.client,
      spent.request.scope, seconds(spent.issued), seconds(now));
  writer_.run("INSERT INTO refresh_tokens (hash, grant_key, parent) VALUES (?1, ?2, 0)",
              refreshToken, writer_.lastKey());
  auto const added = token(refreshToken, spent.request.client);
  transaction.commit();
  return added.value().grant;
}

std::optional<Grant> IdentityStore::renewGrant(std::string const& refreshToken,
                                               std::string_view client, std::string const& next,
                                               Date now) {
  std::lock_guard lock(writing_);
  Transaction transaction(writer_);
  removeIdleGrants(now);
  auto const used = token(refreshToken, client);
  if (!used) return std::nullopt;
  if (used->isGood) {
    writer_.run("UPDATE grants SET current_token = ?2, last_used = ?3 WHERE key = ?1",
                used->grantKey, used->key, seconds(now));
    writer_.run("INSERT INTO refresh_tokens (hash, grant_key, parent) VALUES (?1, ?2, ?3)", next,
                used->grantKey, used->key);
  } else {
    writer_.run("DELETE FROM grants WHERE key = ?1", used->grantKey);
  }
  transaction.commit();
  return used->isGood ? std::optional(used->grant) : std::nullopt;
}

std::optional<IdentityStore::Token> IdentityStore::token(std::string const& hash,
                                                         std::string_view client) {
  auto rows = writer_.query(
      "SELECT token.key, grants.key, current_token IN (token.key, token.parent), "
      "       grants.id, scope, signed_in, subject, name, email, user "
      "FROM refresh_tokens AS token JOIN grants ON grants.key = token.grant_key "
      "     JOIN accounts ON accounts.key = grants.account "
      "WHERE token.hash = ?1 AND client = ?2",
      hash, client);
  if (!rows.next()) return std::nullopt;
  return Token{.key = rows.integer(0),
               .grantKey = rows.integer(1),
               .isGood = rows.integer(2) != 0,
               .grant = {.id = std::string(rows.text(3)),
                         .account = {.subject = std::string(rows.text(6)),
                                     .name = std::string(rows.text(7)),
                                     .email = std::string(rows.text(8)),
                                     .user = UserID(rows.integer(9))},
                         .scope = std::string(rows.text(4)),
                         .signedIn = date(rows.integer(5))}};
}

void IdentityStore::removeIdleGrants(Date now) {
  writer_.run("DELETE FROM grants WHERE last_used < ?1", seconds(now - idleLifetime_));
}

std::optional<UserID> IdentityStore::userOfGrant(std::string_view id) {
  std::lock_guard lock(reading_);
  auto rows = reader_.query(
      "SELECT user FROM grants JOIN accounts ON accounts.key = grants.account WHERE id = ?1", id);
  if (!rows.next()) return std::nullopt;
  return UserID(rows.integer(0));
}

std::vector<IdentityStore::SigningKey> IdentityStore::signingKeys() {
  std::lock_guard lock(reading_);
  auto rows = reader_.query("SELECT id, created, pem FROM signing_keys ORDER BY created");
  std::vector<SigningKey> keys;
  while (rows.next()) {
    keys.push_back({std::string(rows.text(0)), date(rows.integer(1)), std::string(rows.text(2))});
  }
  return keys;
}

void IdentityStore::addSigningKey(SigningKey const& key) {
  std::lock_guard lock(writing_);
  writer_.run("INSERT INTO signing_keys (id, created, pem) VALUES (?1, ?2, ?3)", key.id,
              seconds(key.created), key.pem);
}

void IdentityStore::removeSigningKey(std::string_view id) {
  std::lock_guard lock(writing_);
  writer_.run("DELETE FROM signing_keys WHERE id = ?1", id);
}

}  // namespace vek::services
