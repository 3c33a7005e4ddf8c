// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace vek::services {

/// The folder that the services keep their data in: for its owner alone, and for one program at a
/// time.
class DataFolder {
 public:
  /// Makes the folder if it is missing. Throws `std::runtime_error` with the cause, also when
  /// another program holds it.
  explicit DataFolder(std::filesystem::path path);
  DataFolder(DataFolder const&) = delete;
  DataFolder& operator=(DataFolder const&) = delete;
  ~DataFolder();

  [[nodiscard]] std::filesystem::path operator/(char const* name) const { return path_ / name; }
  [[nodiscard]] std::filesystem::path const& path() const { return path_; }

 private:
  std::filesystem::path path_;
  int lock_ = -1;
};

}  // namespace vek::services
