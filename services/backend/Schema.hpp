// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace vek::services {

/// The scripts that bring the backend's database from each version to the next. A script that was
/// released is never changed. Identifiers are lower-case texts, dates seconds since 1970.
///
/// The text of a transcript is kept in the pieces it came in and joined when it is read, so that
/// an append costs the same however long the text has become.
inline constexpr std::array schema = {R"sql(
  CREATE TABLE users (
    key INTEGER PRIMARY KEY,
    name TEXT NOT NULL
  );
  CREATE TABLE tokens (
    hash TEXT PRIMARY KEY,
    user INTEGER NOT NULL REFERENCES users ON DELETE CASCADE
  ) WITHOUT ROWID;
  CREATE TABLE customers (
    key INTEGER PRIMARY KEY,
    user INTEGER NOT NULL REFERENCES users ON DELETE CASCADE,
    id TEXT NOT NULL,
    record TEXT NOT NULL,
    UNIQUE (user, id)
  );
  CREATE TABLE briefs (
    key INTEGER PRIMARY KEY,
    user INTEGER NOT NULL REFERENCES users ON DELETE CASCADE,
    customer TEXT NOT NULL,
    record TEXT NOT NULL
  );
  CREATE INDEX briefs_of_customer ON briefs (user, customer);
  CREATE TABLE transcripts (
    key INTEGER PRIMARY KEY,
    user INTEGER NOT NULL REFERENCES users ON DELETE CASCADE,
    id TEXT NOT NULL UNIQUE,
    customer TEXT,
    insight TEXT NOT NULL,
    status TEXT NOT NULL,
    created INTEGER NOT NULL,
    modified INTEGER NOT NULL
  );
  CREATE INDEX transcripts_by_date ON transcripts (user, created);
  CREATE INDEX transcripts_of_customer ON transcripts (user, customer, created);
  CREATE INDEX transcripts_of_insight ON transcripts (user, insight, created);
  CREATE TABLE pieces (
    key INTEGER PRIMARY KEY,
    transcript INTEGER NOT NULL REFERENCES transcripts ON DELETE CASCADE,
    text TEXT NOT NULL
  );
  CREATE INDEX pieces_of_transcript ON pieces (transcript);
  CREATE TABLE analyses (
    transcript INTEGER PRIMARY KEY REFERENCES transcripts ON DELETE CASCADE,
    maker TEXT NOT NULL,
    size INTEGER NOT NULL,
    text TEXT NOT NULL
  );
)sql",
                                      "DROP TABLE tokens"};

}  // namespace vek::services
