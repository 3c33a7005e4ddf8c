// SPDX-License-Identifier: MIT
#include "services/support/Database.hpp"

#include <sqlite3.h>

namespace vek::services {

namespace {

[[noreturn]] void fail(sqlite3* database, int code) {
  // A write that the system refuses for want of room comes as "full" or, behind a quota or a limit
  // on the file's size, as a failed write.
  int const extended = database != nullptr ? sqlite3_extended_errcode(database) : code;
  bool const isFull = (code & 0xff) == SQLITE_FULL || extended == SQLITE_IOERR_WRITE;
  auto const kind = isFull ? DatabaseError::Kind::full : DatabaseError::Kind::other;
  throw DatabaseError(kind, database != nullptr ? sqlite3_errmsg(database) : sqlite3_errstr(code));
}

}  // namespace

Rows::~Rows() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

bool Rows::next() {
  int const code = sqlite3_step(statement_);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  fail(database_, code);
}

std::int64_t Rows::integer(int column) const {
  return sqlite3_column_int64(statement_, column);
}

std::string_view Rows::text(int column) const {
  auto const* bytes = static_cast<char const*>(sqlite3_column_blob(statement_, column));
  if (bytes == nullptr) return {};
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

bool Rows::isNull(int column) const {
  return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

Database::Database(std::filesystem::path const& file, Access access) {
  int const flags = access == Access::readOnly ? SQLITE_OPEN_READONLY
                                               : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  int const code = sqlite3_open_v2(file.c_str(), &handle_, flags, nullptr);
  if (code != SQLITE_OK) {
    DatabaseError error(DatabaseError::Kind::other, file.string() + ": " + sqlite3_errstr(code));
    sqlite3_close(handle_);
    throw error;
  }
  try {
    sqlite3_busy_timeout(handle_, 5000);
    // What was acknowledged survives a loss of power: each commit is synced.
    if (access == Access::readWrite)
      execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL");
    execute("PRAGMA foreign_keys = ON");
  } catch (...) {
    sqlite3_close(handle_);
    throw;
  }
}

Database::~Database() {
  for (auto const& [sql, statement] : statements_) sqlite3_finalize(statement);
  sqlite3_close(handle_);
}

void Database::execute(std::string const& script) {
  int const code = sqlite3_exec(handle_, script.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) fail(handle_, code);
}

void Database::migrate(std::span<char const* const> scripts) {
  Transaction transaction(*this);
  auto const version = [this] {
    auto rows = query("PRAGMA user_version");
    rows.next();
    return static_cast<std::size_t>(rows.integer(0));
  }();
  if (version > scripts.size()) {
    throw DatabaseError(DatabaseError::Kind::other,
                        "The database was made by a newer version of this program.");
  }
  for (auto const* script : scripts.subspan(version)) execute(script);
  if (version < scripts.size()) {
    execute("PRAGMA user_version = " + std::to_string(scripts.size()));
  }
  transaction.commit();
}

sqlite3_stmt* Database::prepared(std::string_view sql) {
  if (auto const known = statements_.find(sql); known != statements_.end()) return known->second;
  sqlite3_stmt* statement = nullptr;
  int const code = sqlite3_prepare_v3(handle_, sql.data(), static_cast<int>(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  if (code != SQLITE_OK) fail(handle_, code);
  statements_.emplace(sql, statement);
  return statement;
}

void Database::bind(sqlite3_stmt* statement, int index, std::int64_t value) {
  int const code = sqlite3_bind_int64(statement, index, value);
  if (code != SQLITE_OK) fail(handle_, code);
}

void Database::bind(sqlite3_stmt* statement, int index, std::string_view value) {
  // An empty view may have no address, which would bind a null.
  int const code = sqlite3_bind_text64(statement, index, value.empty() ? "" : value.data(),
                                       value.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  if (code != SQLITE_OK) fail(handle_, code);
}

void Database::bindNull(sqlite3_stmt* statement, int index) {
  int const code = sqlite3_bind_null(statement, index);
  if (code != SQLITE_OK) fail(handle_, code);
}

std::int64_t Database::lastKey() const {
  return sqlite3_last_insert_rowid(handle_);
}

int Database::changes() const {
  return sqlite3_changes(handle_);
}

bool Database::isInTransaction() const {
  return sqlite3_get_autocommit(handle_) == 0;
}

Transaction::Transaction(Database& database) : database_(database) {
  database_.run("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
  // A full disk has ended the transaction already.
  if (!database_.isInTransaction()) return;
  try {
    database_.run("ROLLBACK");
  } catch (DatabaseError const&) {
    // The next start of the database undoes what is left.
  }
}

void Transaction::commit() {
  database_.run("COMMIT");
}

}  // namespace vek::services
