// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/UserDefaults.hpp"
#include "runtime/Date.hpp"

namespace vek {

/// What the updater keeps in the user's settings. A setting that cannot be stored is told to the
/// log and stays as it was. Any thread may call.
class UpdateSettings {
 public:
  explicit UpdateSettings(UserDefaults& defaults) : defaults_(&defaults) {}

  [[nodiscard]] bool automaticallyChecksForUpdates() const;
  void setAutomaticallyChecksForUpdates(bool checks) const;
  [[nodiscard]] bool automaticallyDownloadsUpdates() const;
  void setAutomaticallyDownloadsUpdates(bool downloads) const;

  /// The start of 1970 when there was none.
  [[nodiscard]] Date lastCheck() const;
  void setLastCheck(Date date) const;
  /// The version that the user does not want to hear of again; empty for none.
  [[nodiscard]] std::string skippedVersion() const;
  void setSkippedVersion(std::string const& version) const;
  /// The highest serial of a list of updates so far, of those signed with the same key: the lists
  /// of another publisher are counted anew.
  [[nodiscard]] std::uint64_t latestSerial(std::string const& publisher) const;
  void setLatestSerial(std::string const& publisher, std::uint64_t serial) const;

 private:
  UserDefaults* defaults_;
};

}  // namespace vek
