// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "services/backend/BackendStore.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek::test {

namespace {

using services::BackendStore;
using services::Database;
using services::DatabaseError;
using services::UserID;
using testing::IsEmpty;
using testing::SizeIs;

Date const noon{std::chrono::seconds(1'700'000'000)};

class Store : public testing::Test {
 protected:
  BackendStore::NewTranscript made(Date createdOn = noon) {
    BackendStore::NewTranscript transcript{UUID::random(), UUID::random(), {}, createdOn};
    store.create(user, transcript);
    return transcript;
  }

  TemporaryFolder folder;
  BackendStore store{folder / "store.sqlite"};
  UserID user = store.addUser("one", {}, {});
  UserID other = store.addUser("two", {}, {});
};

TEST_F(Store, ListsTheNewestFirstAndFiltersByCustomerAndInsight) {
  auto const old = made(noon - std::chrono::hours(1));
  auto const first = made();
  auto const second = made();
  store.append(user, first.id, "text", noon);
  auto const customer = UUID::random();
  store.complete(user, old.id, customer, noon);

  auto const all = store.transcripts(user, {}, {});
  ASSERT_THAT(all, SizeIs(3));
  EXPECT_EQ(all[0].id, second.id);
  EXPECT_EQ(all[1].transcript, "text");
  EXPECT_EQ(all[2].id, old.id);
  EXPECT_EQ(store.transcripts(user, customer, {}).at(0).id, old.id);
  EXPECT_EQ(store.transcripts(user, {}, first.insightID).at(0).id, first.id);
  EXPECT_THAT(store.transcripts(user, customer, first.insightID), IsEmpty());
  EXPECT_THAT(store.metadata(other), IsEmpty());
}

TEST_F(Store, ALongListHasEachOnceAlsoWhereManyBeganAtOnce) {
  std::vector<UUID> newestFirst;
  for (int i = 0; i < 1200; ++i) {
    newestFirst.push_back(made(noon + std::chrono::seconds(i / 400)).id);
    if (i % 100 == 0) store.append(user, newestFirst.back(), "text", noon);
  }
  std::ranges::reverse(newestFirst);
  auto const ids = [](auto const& rows) {
    std::vector<UUID> result;
    for (auto const& row : rows) result.push_back(row.id);
    return result;
  };
  EXPECT_EQ(ids(store.metadata(user)), newestFirst);
  EXPECT_EQ(ids(store.transcripts(user, {}, {})), newestFirst);
}

TEST_F(Store, MoreTextAfterCompletionLeavesItComplete) {
  auto const transcript = made();
  store.complete(user, transcript.id, UUID::random(), noon);
  EXPECT_TRUE(store.append(user, transcript.id, "late", noon + std::chrono::minutes(1)));
  EXPECT_EQ(store.transcripts(user, {}, {}).at(0).status, TranscriptionStatusDTO::completed);
  EXPECT_EQ(store.metadata(user).at(0).lastModifiedOn, noon + std::chrono::minutes(1));
}

TEST_F(Store, TextsHoldAnyCharacterAndMayBeEmpty) {
  auto const transcript = made();
  EXPECT_EQ(store.text(user, transcript.id), "");
  std::string const odd("a\0b'\"%\n\xF0\x9F\x99\x82", 11);
  store.append(user, transcript.id, odd, noon);
  store.append(user, transcript.id, "", noon);
  EXPECT_EQ(store.text(user, transcript.id), odd);
}

TEST_F(Store, AnAnalysisHoldsForTheTextItWasMadeOf) {
  auto const transcript = made();
  store.setAnalyses({{transcript.id, "maker", 10, "# One"}});
  EXPECT_EQ(store.analysis(transcript.id, "maker", 10), "# One");
  EXPECT_EQ(store.analysis(transcript.id, "maker", 11), std::nullopt);
  EXPECT_EQ(store.analysis(transcript.id, "another", 10), std::nullopt);
  store.setAnalyses({{transcript.id, "maker", 11, "# Two"}});
  EXPECT_EQ(store.analysis(transcript.id, "maker", 11), "# Two");
  store.remove(user, transcript.id);
  EXPECT_EQ(store.analysis(transcript.id, "maker", 11), std::nullopt);
}

/// The bytes that this process has handed to the system to write.
std::uint64_t writtenBytes() {
  std::ifstream file("/proc/self/io");
  for (std::string key; file >> key;) {
    std::uint64_t value = 0;
    file >> value;
    if (key == "wchar:") return value;
  }
  return 0;
}

TEST_F(Store, AnAppendCostsTheSameHoweverLongTheTextIs) {
  auto const transcript = made();
  auto const costOfPieces = [&] {
    auto const before = writtenBytes();
    for (int i = 0; i < 50; ++i) store.append(user, transcript.id, "a few more words ", noon);
    return writtenBytes() - before;
  };
  auto const costWhenShort = costOfPieces();
  store.append(user, transcript.id, std::string(4 << 20, 'x'), noon);
  EXPECT_GT(costWhenShort, 0U);
  EXPECT_LT(costOfPieces(), 3 * costWhenShort);
}

TEST(StoreFile, OfANewerVersionIsLeftAlone) {
  TemporaryFolder folder;
  {
    BackendStore const store(folder / "store.sqlite");
  }
  {
    Database database(folder / "store.sqlite", Database::Access::readWrite);
    database.execute("PRAGMA user_version = 999");
  }
  EXPECT_THROW(BackendStore(folder / "store.sqlite"), DatabaseError);
}

TEST(StoreFile, ATransactionThatFailsIsUndoneAndTheNextOneWorks) {
  TemporaryFolder folder;
  Database database(folder / "file.sqlite", Database::Access::readWrite);
  database.execute("CREATE TABLE list (text TEXT); PRAGMA max_page_count = 20");
  database.run("INSERT INTO list VALUES ('kept')");
  try {
    services::Transaction transaction(database);
    database.run("DELETE FROM list");
    database.run("INSERT INTO list VALUES (?1)", std::string_view(std::string(1 << 20, 'x')));
    FAIL() << "a megabyte fits into twenty pages";
  } catch (DatabaseError const& error) {
    EXPECT_EQ(error.kind, DatabaseError::Kind::full);
  }
  database.run("INSERT INTO list VALUES ('more')");
  auto rows = database.query("SELECT group_concat(text) FROM list");
  ASSERT_TRUE(rows.next());
  EXPECT_EQ(rows.text(0), "kept,more");
}

}  // namespace

}  // namespace vek::test
