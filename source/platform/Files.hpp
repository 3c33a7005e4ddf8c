// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vek {

/// All bytes of a file; nothing when there is no such file. Throws std::system_error when there
/// is one that cannot be read.
[[nodiscard]] std::optional<std::string> readFile(std::filesystem::path const& file);

/// Puts `content` in the place of a file that only the user may read. A reader, or a loss of
/// power, finds either the old content or the new. Missing folders are made, for the user alone.
/// A process that is killed meanwhile leaves a file behind whose name begins with a dot and that of
/// `file`. Throws std::system_error.
void replaceFile(std::filesystem::path const& file, std::string_view content);

/// Holds a lock between processes, on a file that is made when it is missing, for as long as it
/// lives or its process does. Throws std::system_error.
class FileLock {
 public:
  /// Waits for the lock.
  explicit FileLock(std::filesystem::path const& file);
  /// Waits so long; the error is then std::errc::timed_out.
  FileLock(std::filesystem::path const& file, std::chrono::milliseconds limit);
  FileLock(FileLock const&) = delete;
  FileLock& operator=(FileLock const&) = delete;
  ~FileLock();

 private:
  int descriptor_ = -1;
};

}  // namespace vek
