// SPDX-License-Identifier: MIT
#include "services/support/DataFolder.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace vek::services {

DataFolder::DataFolder(std::filesystem::path path) : path_(std::move(path)) {
  std::error_code error;
  // A folder that was there keeps its permissions; what is put into it is for its owner alone.
  bool const isNew = std::filesystem::create_directories(path_, error);
  if (isNew && !error) {
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, error);
  }
  if (error) {
    throw std::runtime_error(
        fmt::format("The folder {} can not be used: {}.", path_.string(), error.message()));
  }
  lock_ = open((path_ / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (lock_ < 0) {
    throw std::runtime_error(
        fmt::format("The folder {} can not be used: {}.", path_.string(), std::strerror(errno)));
  }
  if (flock(lock_, LOCK_EX | LOCK_NB) != 0) {
    close(lock_);
    throw std::runtime_error(
        fmt::format("The folder {} is in use by another vek-services.", path_.string()));
  }
}

DataFolder::~DataFolder() {
  close(lock_);
}

}  // namespace vek::services
