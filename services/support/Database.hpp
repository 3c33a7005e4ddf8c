// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace vek::services {

/// A failure of the database. The data are as they were before the statement's transaction.
struct DatabaseError : std::runtime_error {
  enum class Kind { full, other };
  DatabaseError(Kind kind, std::string const& what) : std::runtime_error(what), kind(kind) {}
  Kind kind;
};

/// The rows of one query, from before the first. Resets its statement when it goes.
class Rows {
 public:
  Rows(sqlite3* database, sqlite3_stmt* statement) : database_(database), statement_(statement) {}
  Rows(Rows const&) = delete;
  Rows& operator=(Rows const&) = delete;
  ~Rows();

  /// Steps to the next row; false after the last.
  bool next();

  [[nodiscard]] std::int64_t integer(int column) const;
  /// Empty for a null. The view holds until the next step.
  [[nodiscard]] std::string_view text(int column) const;
  [[nodiscard]] bool isNull(int column) const;

 private:
  sqlite3* database_;
  sqlite3_stmt* statement_;
};

/// One connection to an SQLite file in write-ahead mode, with its prepared statements. For one
/// thread at a time, and one `Rows` per statement.
class Database {
 public:
  enum class Access { readWrite, readOnly };

  Database(std::filesystem::path const& file, Access access);
  Database(Database const&) = delete;
  Database& operator=(Database const&) = delete;
  ~Database();

  /// Runs a script without parameters.
  void execute(std::string const& script);

  /// Brings an older database, or an empty one, to the version that these scripts make, each from
  /// the version before it.
  void migrate(std::span<char const* const> scripts);

  /// Runs a query whose parameters ?1, ?2, ... are `parameters`: integers, texts or nothing.
  template <class... Parameters>
  [[nodiscard]] Rows query(std::string_view sql, Parameters const&... parameters) {
    auto* statement = prepared(sql);
    int index = 0;
    (bind(statement, ++index, parameters), ...);
    return {handle_, statement};
  }

  /// Runs a statement that gives no rows and returns how many rows it changed.
  template <class... Parameters>
  int run(std::string_view sql, Parameters const&... parameters) {
    query(sql, parameters...).next();
    return changes();
  }

  /// The key of the row inserted last.
  [[nodiscard]] std::int64_t lastKey() const;

 private:
  friend class Transaction;
  sqlite3_stmt* prepared(std::string_view sql);
  void bind(sqlite3_stmt* statement, int index, std::int64_t value);
  void bind(sqlite3_stmt* statement, int index, std::string_view value);
  void bindNull(sqlite3_stmt* statement, int index);
  template <class Value>
  void bind(sqlite3_stmt* statement, int index, std::optional<Value> const& value) {
    value ? bind(statement, index, *value) : bindNull(statement, index);
  }
  [[nodiscard]] int changes() const;
  [[nodiscard]] bool isInTransaction() const;

  sqlite3* handle_ = nullptr;
  std::map<std::string, sqlite3_stmt*, std::less<>> statements_;
};

/// All or nothing: what was written since it began is undone unless it was committed.
class Transaction {
 public:
  explicit Transaction(Database& database);
  Transaction(Transaction const&) = delete;
  Transaction& operator=(Transaction const&) = delete;
  ~Transaction();

  void commit();

 private:
  Database& database_;
};

}  // namespace vek::services
