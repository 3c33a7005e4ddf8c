// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/Date.hpp"
#include "services/identity/AuthorizationRequest.hpp"
#include "services/identity/Password.hpp"
#include "services/support/Database.hpp"
#include "services/support/UserID.hpp"

namespace vek::services {

/// Who can sign in.
struct Account {
  /// What tokens call the account; never changes and is never given to another.
  std::string subject;
  /// What the person types.
  std::string name;
  std::string email;
  /// Whose data the account opens.
  UserID user{};
};

/// What one sign-in of an account allows a client.
struct Grant {
  std::string id;
  Account account;
  std::string scope;
  Date signedIn;
};

/// What the identity provider keeps, in one SQLite file. Any thread may call. An operation either
/// happens as a whole or throws `DatabaseError` and changes nothing.
class IdentityStore {
 public:
  /// Opens the file, or makes it. A grant ends when it has not been renewed for `idleLifetime`.
  IdentityStore(std::filesystem::path const& file, std::chrono::seconds idleLifetime);

  bool hasAccounts();
  void addAccount(Account const& account, PasswordHash const& password);
  struct Login {
    std::int64_t accountKey = 0;
    PasswordHash password;
  };
  std::optional<Login> login(std::string_view name);

  // Codes and refresh tokens are named by their `tokenHash`.

  void addCode(std::string const& code, std::int64_t accountKey,
               AuthorizationRequest const& request, Date now);
  struct Code {
    std::int64_t accountKey = 0;
    AuthorizationRequest request;
    Date issued;
  };
  /// What the code stands for, once. A second use ends the grant that the first one led to.
  std::optional<Code> spendCode(std::string const& code);

  /// Begins the grant of a spent code, with its first refresh token.
  Grant addGrant(std::string const& code, Code const& spent, std::string const& refreshToken,
                 Date now);

  /// Puts `next` in the place of a refresh token, which stays good until `next` is used first. A
  /// use after that ends the grant.
  std::optional<Grant> renewGrant(std::string const& refreshToken, std::string_view client,
                                  std::string const& next, Date now);

  /// Whose data a grant opens; nothing when it has ended.
  std::optional<UserID> userOfGrant(std::string_view id);

  struct SigningKey {
    std::string id;
    Date created;
    std::string pem;
  };
  /// Oldest first.
  std::vector<SigningKey> signingKeys();
  void addSigningKey(SigningKey const& key);
  void removeSigningKey(std::string_view id);

 private:
  struct Token {
    std::int64_t key = 0;
    std::int64_t grantKey = 0;
    /// It has not been replaced: neither its successor nor a sibling has been used.
    bool isGood = false;
    Grant grant;
  };
  std::optional<Token> token(std::string const& hash, std::string_view client);
  void removeIdleGrants(Date now);

  std::chrono::seconds idleLifetime_;
  std::mutex writing_;
  Database writer_;
  std::mutex reading_;
  Database reader_;
};

}  // namespace vek::services
