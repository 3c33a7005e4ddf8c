// SPDX-License-Identifier: MIT
#include "services/backend/BackendStore.hpp"

#include <fmt/format.h>

#include <limits>

#include "records/JSON.hpp"
#include "services/backend/Schema.hpp"

namespace vek::services {

namespace {

/// The transcripts that are read at a time: others wait no longer for a long list than for these.
constexpr std::int64_t pageSize = 500;

std::int64_t seconds(Date date) {
  return std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
}

Date date(std::int64_t seconds) {
  return Date(std::chrono::seconds(seconds));
}

std::optional<std::string> lowerCaseText(std::optional<UUID> const& id) {
  if (!id) return std::nullopt;
  return id->lowerCaseText();
}

std::string_view statusText(TranscriptionStatusDTO status) {
  for (auto const& [known, text] : jsonTexts(status)) {
    if (known == status) return text;
  }
  return {};
}

TranscriptionStatusDTO status(std::string_view stored) {
  for (auto const& [status, text] : jsonTexts(TranscriptionStatusDTO())) {
    if (text == stored) return status;
  }
  throw DatabaseError(DatabaseError::Kind::other, "A transcript has an unknown status.");
}

UUID identifier(std::string_view stored) {
  if (auto const id = UUID::parse(stored)) return *id;
  throw DatabaseError(DatabaseError::Kind::other, "A stored identifier is damaged.");
}

}  // namespace

BackendStore::BackendStore(std::filesystem::path const& file)
    : writer_(file, Database::Access::readWrite), reader_(file, Database::Access::readOnly) {
  writer_.migrate(schema);
}

std::optional<UserID> BackendStore::firstUser() {
  std::lock_guard lock(reading_);
  auto rows = reader_.query("SELECT min(key) FROM users");
  if (!rows.next() || rows.isNull(0)) return std::nullopt;
  return UserID(rows.integer(0));
}

UserID BackendStore::addUser(std::string_view name, std::vector<CustomerDTO> const& customers,
                             std::vector<CustomerBrief> const& briefs) {
  std::lock_guard lock(writing_);
  Transaction transaction(writer_);
  writer_.run("INSERT INTO users (name) VALUES (?1)", name);
  auto const user = writer_.lastKey();
  for (auto const& customer : customers) {
    writer_.run("INSERT INTO customers (user, id, record) VALUES (?1, ?2, ?3)", user,
                customer.id.lowerCaseText(), json::encode(customer));
  }
  for (auto const& [customer, brief] : briefs) {
    writer_.run("INSERT INTO briefs (user, customer, record) VALUES (?1, ?2, ?3)", user,
                customer.lowerCaseText(), json::encode(brief));
  }
  transaction.commit();
  return UserID(user);
}

std::string BackendStore::customers(UserID user) {
  std::lock_guard lock(reading_);
  auto rows = reader_.query("SELECT record FROM customers WHERE user = ?1 ORDER BY key",
                            std::int64_t(user));
  std::string list = "[";
  while (rows.next()) {
    if (list.size() > 1) list += ',';
    list += rows.text(0);
  }
  return list + "]";
}

bool BackendStore::hasCustomer(UserID user, UUID customer) {
  std::lock_guard lock(reading_);
  return reader_
      .query("SELECT 1 FROM customers WHERE user = ?1 AND id = ?2", std::int64_t(user),
             customer.lowerCaseText())
      .next();
}

std::vector<BriefDTO> BackendStore::briefs(UserID user, std::optional<UUID> customer) {
  std::lock_guard lock(reading_);
  auto const id = lowerCaseText(customer);
  auto rows =
      reader_.query(fmt::format("SELECT record FROM briefs WHERE user = ?1 AND {} ORDER BY key",
                                customer ? "customer = ?2" : "?2 IS NULL"),
                    std::int64_t(user), id);
  std::vector<BriefDTO> result;
  while (rows.next()) result.push_back(json::decode<BriefDTO>(rows.text(0)));
  return result;
}

void BackendStore::create(UserID user, NewTranscript const& transcript) {
  std::lock_guard lock(writing_);
  auto const customer = lowerCaseText(transcript.customerID);
  writer_.run(
      "INSERT INTO transcripts (user, id, customer, insight, status, created, modified) "
      "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?6)",
      std::int64_t(user), transcript.id.lowerCaseText(), customer,
      transcript.insightID.lowerCaseText(), statusText(TranscriptionStatusDTO::started),
      seconds(transcript.createdOn));
}

bool BackendStore::append(UserID user, UUID transcript, std::string_view added, Date now) {
  std::lock_guard lock(writing_);
  Transaction transaction(writer_);
  auto const id = transcript.lowerCaseText();
  int const known = writer_.run(
      "UPDATE transcripts SET modified = ?3, status = CASE status WHEN ?4 THEN ?4 ELSE ?5 END "
      "WHERE user = ?1 AND id = ?2",
      std::int64_t(user), id, seconds(now), statusText(TranscriptionStatusDTO::completed),
      statusText(TranscriptionStatusDTO::inProgress));
  if (known == 0) return false;
  writer_.run("INSERT INTO pieces (transcript, text) SELECT key, ?2 FROM transcripts WHERE id = ?1",
              id, added);
  transaction.commit();
  return true;
}

BackendStore::Completion BackendStore::complete(UserID user, UUID transcript, UUID customer,
                                                Date now) {
  std::lock_guard lock(writing_);
  auto const id = transcript.lowerCaseText();
  auto const wanted = customer.lowerCaseText();
  int const completed = writer_.run(
      "UPDATE transcripts SET customer = ?3, modified = ?4, status = ?5 "
      "WHERE user = ?1 AND id = ?2 AND coalesce(customer, ?3) = ?3",
      std::int64_t(user), id, wanted, seconds(now), statusText(TranscriptionStatusDTO::completed));
  if (completed > 0) return Completion::done;
  auto known = writer_.query("SELECT 1 FROM transcripts WHERE user = ?1 AND id = ?2",
                             std::int64_t(user), id);
  return known.next() ? Completion::hasAnotherCustomer : Completion::noTranscript;
}

bool BackendStore::remove(UserID user, UUID transcript) {
  std::lock_guard lock(writing_);
  return writer_.run("DELETE FROM transcripts WHERE user = ?1 AND id = ?2", std::int64_t(user),
                     transcript.lowerCaseText()) > 0;
}

std::optional<std::string> BackendStore::text(UserID user, UUID transcript) {
  std::lock_guard lock(reading_);
  auto rows = reader_.query(
      "SELECT pieces.text FROM transcripts LEFT JOIN pieces ON pieces.transcript = transcripts.key "
      "WHERE transcripts.user = ?1 AND transcripts.id = ?2 ORDER BY pieces.key",
      std::int64_t(user), transcript.lowerCaseText());
  if (!rows.next()) return std::nullopt;
  std::string whole;
  do whole += rows.text(0);
  while (rows.next());
  return whole;
}

std::optional<std::string> BackendStore::analysis(UUID transcript, std::string_view maker,
                                                  std::size_t textSize) {
  std::lock_guard lock(reading_);
  auto rows = reader_.query(
      "SELECT analyses.text FROM analyses JOIN transcripts ON transcripts.key = "
      "analyses.transcript "
      "WHERE transcripts.id = ?1 AND maker = ?2 AND size = ?3",
      transcript.lowerCaseText(), maker, std::int64_t(textSize));
  if (!rows.next()) return std::nullopt;
  return std::string(rows.text(0));
}

void BackendStore::setAnalyses(std::vector<Analysis> const& analyses) {
  std::lock_guard lock(writing_);
  Transaction transaction(writer_);
  for (auto const& analysis : analyses) {
    writer_.run(
        "INSERT OR REPLACE INTO analyses (transcript, maker, size, text) "
        "SELECT key, ?2, ?3, ?4 FROM transcripts WHERE id = ?1",
        analysis.transcript.lowerCaseText(), analysis.maker, std::int64_t(analysis.textSize),
        analysis.text);
  }
  transaction.commit();
}

std::vector<TranscriptDTO> BackendStore::transcripts(UserID user, std::optional<UUID> customer,
                                                     std::optional<UUID> insight) {
  auto const customerText = lowerCaseText(customer);
  auto const insightText = lowerCaseText(insight);
  // A condition for each that is given, so that its index serves.
  auto const sql = fmt::format(
      "SELECT page.key, created, id, insight, status, pieces.text FROM (SELECT * FROM transcripts "
      "WHERE user = ?1 AND (created, key) < (?2, ?3) AND {} AND {} "
      "ORDER BY created DESC, key DESC LIMIT ?4) AS page "
      "LEFT JOIN pieces ON pieces.transcript = page.key "
      "ORDER BY created DESC, page.key DESC, pieces.key",
      customer ? "customer = ?5" : "?5 IS NULL", insight ? "insight = ?6" : "?6 IS NULL");
  std::vector<TranscriptDTO> result;
  readPages([&](Place place) {
    auto rows = reader_.query(sql, std::int64_t(user), place.created, place.key, pageSize,
                              customerText, insightText);
    std::optional<Place> last;
    while (rows.next()) {
      Place const row{.created = rows.integer(1), .key = rows.integer(0)};
      if (row != last) {
        result.push_back({.id = identifier(rows.text(2)),
                          .insightID = identifier(rows.text(3)),
                          .transcript = {},
                          .status = status(rows.text(4)),
                          .createdOn = date(row.created)});
      }
      result.back().transcript += rows.text(5);
      last = row;
    }
    return last;
  });
  return result;
}

std::vector<TranscriptMetadataDTO> BackendStore::metadata(UserID user) {
  std::vector<TranscriptMetadataDTO> result;
  readPages([&](Place place) {
    auto rows = reader_.query(
        "SELECT key, created, id, insight, modified, customer FROM transcripts "
        "WHERE user = ?1 AND (created, key) < (?2, ?3) ORDER BY created DESC, key DESC LIMIT ?4",
        std::int64_t(user), place.created, place.key, pageSize);
    std::optional<Place> last;
    while (rows.next()) {
      last = {.created = rows.integer(1), .key = rows.integer(0)};
      TranscriptMetadataDTO row{.id = identifier(rows.text(2)),
                                .insightID = identifier(rows.text(3)),
                                .createdOn = date(last->created),
                                .lastModifiedOn = date(rows.integer(4)),
                                .customerID = {}};
      if (!rows.isNull(5)) row.customerID = identifier(rows.text(5));
      result.push_back(row);
    }
    return last;
  });
  return result;
}

void BackendStore::readPages(PageReader const& readPage) {
  constexpr auto end = std::numeric_limits<std::int64_t>::max();
  for (std::optional<Place> place = Place{.created = end, .key = end}; place;) {
    std::lock_guard lock(reading_);
    place = readPage(*place);
  }
}

}  // namespace vek::services
