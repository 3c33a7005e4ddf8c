// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <string>

namespace vek::test {

/// The database's own check of the whole file, "ok" when all is well.
inline std::string databaseIntegrity(std::filesystem::path const& file) {
  sqlite3* database = nullptr;
  sqlite3_open(file.c_str(), &database);
  std::string result;
  sqlite3_exec(
      database, "PRAGMA integrity_check",
      [](void* text, int, char** columns, char**) {
        *static_cast<std::string*>(text) += columns[0];
        return 0;
      },
      &result, nullptr);
  sqlite3_close(database);
  return result;
}

}  // namespace vek::test
