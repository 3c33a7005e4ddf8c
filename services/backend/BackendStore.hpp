// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "records/BriefDTO.hpp"
#include "records/CustomerDTO.hpp"
#include "records/TranscriptDTO.hpp"
#include "records/TranscriptMetadataDTO.hpp"
#include "runtime/Date.hpp"
#include "runtime/UUID.hpp"
#include "services/support/Database.hpp"
#include "services/support/UserID.hpp"

namespace vek::services {

/// A brief and the customer whom it prepares for.
struct CustomerBrief {
  UUID customerID;
  BriefDTO brief;
};

/// What the backend keeps, each user's apart from the others', in one SQLite file. Any thread may
/// call: writers wait for each other, readers for no writer. An operation either happens as a whole
/// or throws `DatabaseError` and changes nothing.
class BackendStore {
 public:
  /// Opens the file, or makes it. Throws `DatabaseError`.
  explicit BackendStore(std::filesystem::path const& file);

  /// The first user there is; nothing in a new store.
  std::optional<UserID> firstUser();
  UserID addUser(std::string_view name, std::vector<CustomerDTO> const& customers,
                 std::vector<CustomerBrief> const& briefs);

  /// As a JSON list of `CustomerDTO`, in the order they were added.
  std::string customers(UserID user);
  bool hasCustomer(UserID user, UUID customer);
  std::vector<BriefDTO> briefs(UserID user, std::optional<UUID> customer);

  struct NewTranscript {
    UUID id;
    UUID insightID;
    std::optional<UUID> customerID;
    Date createdOn;
  };
  void create(UserID user, NewTranscript const& transcript);

  // Of these each returns false, or nothing, when the user has no such transcript.

  bool append(UserID user, UUID transcript, std::string_view text, Date now);
  bool remove(UserID user, UUID transcript);
  std::optional<std::string> text(UserID user, UUID transcript);

  enum class Completion : std::uint8_t { done, noTranscript, hasAnotherCustomer };
  /// Of a customer that was set no other takes the place.
  Completion complete(UserID user, UUID transcript, UUID customer, Date now);

  struct Analysis {
    UUID transcript;
    std::string maker;
    std::size_t textSize = 0;
    std::string text;
  };
  /// Keeps analyses, one a transcript, in one go.
  void setAnalyses(std::vector<Analysis> const& analyses);
  /// The analysis that was kept, if it is by this maker and of a text of this size. As texts only
  /// grow, that is the same text.
  std::optional<std::string> analysis(UUID transcript, std::string_view maker,
                                      std::size_t textSize);

  // Newest first. A list is read in pages, between which others read and write.

  std::vector<TranscriptDTO> transcripts(UserID user, std::optional<UUID> customer,
                                         std::optional<UUID> insight);
  std::vector<TranscriptMetadataDTO> metadata(UserID user);

 private:
  /// Where a page of transcripts begins: after the one of this date and key, newest first.
  struct Place {
    std::int64_t created;
    std::int64_t key;
    bool operator==(Place const&) const = default;
  };
  /// Reads the page after a place and gives the place of its last row; nothing after the last page.
  using PageReader = std::function<std::optional<Place>(Place)>;
  void readPages(PageReader const& readPage);

  std::mutex writing_;
  Database writer_;
  std::mutex reading_;
  Database reader_;
};

}  // namespace vek::services
