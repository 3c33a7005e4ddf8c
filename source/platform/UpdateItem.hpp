// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/Version.hpp"

namespace vek {

/// A version of the program that its maker has published.
struct UpdateItem {
  Version version;
  /// What users call the version.
  std::string displayVersionString;
  /// What is new, as plain text; it may be empty.
  std::string notes;
  /// The page that has the download; always an https URL.
  std::string link;
};

/// How an update came to be found.
struct UserUpdateState {
  /// The user asked for the check, rather than the schedule.
  bool userInitiated = false;
};

}  // namespace vek
