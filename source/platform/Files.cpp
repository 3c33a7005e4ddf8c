// SPDX-License-Identifier: MIT
#include "platform/Files.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <thread>
#include <utility>

namespace vek {
namespace {

std::system_error failure(std::filesystem::path const& file, int code = errno) {
  return {code, std::generic_category(), file.string()};
}

class Descriptor {
 public:
  Descriptor(std::filesystem::path const& file, int flags, mode_t mode = 0)
      : value_(open(file.c_str(), flags | O_CLOEXEC, mode)) {}
  explicit Descriptor(int value) : value_(value) {}
  Descriptor(Descriptor const&) = delete;
  Descriptor& operator=(Descriptor const&) = delete;
  ~Descriptor() {
    if (value_ >= 0) close(value_);
  }

  [[nodiscard]] int value() const { return value_; }
  [[nodiscard]] bool isOpen() const { return value_ >= 0; }
  int release() { return std::exchange(value_, -1); }

 private:
  int value_;
};

void writeAll(int descriptor, std::string_view content, std::filesystem::path const& file) {
  while (!content.empty()) {
    ssize_t const written = write(descriptor, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw failure(file);
    content.remove_prefix(static_cast<std::size_t>(written));
  }
}

void makeFolder(std::filesystem::path const& folder) {
  if (folder.empty() || std::filesystem::exists(folder)) return;
  makeFolder(folder.parent_path());
  if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) throw failure(folder);
}

}  // namespace

std::optional<std::string> readFile(std::filesystem::path const& file) {
  Descriptor const descriptor(file, O_RDONLY);
  if (!descriptor.isOpen()) {
    if (errno == ENOENT || errno == ENOTDIR) return std::nullopt;
    throw failure(file);
  }
  std::string content;
  std::array<char, 16 * 1024> block{};
  while (true) {
    ssize_t const count = read(descriptor.value(), block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw failure(file);
    if (count == 0) return content;
    content.append(block.data(), static_cast<std::size_t>(count));
  }
}

void replaceFile(std::filesystem::path const& file, std::string_view content) {
  makeFolder(file.parent_path());
  std::string temporary =
      (file.parent_path() / ("." + file.filename().string() + ".XXXXXX")).string();
  Descriptor const descriptor(mkostemp(temporary.data(), O_CLOEXEC));  // made with mode 0600
  if (!descriptor.isOpen()) throw failure(temporary);
  try {
    writeAll(descriptor.value(), content, temporary);
    if (fsync(descriptor.value()) != 0) throw failure(temporary);
    if (rename(temporary.c_str(), file.c_str()) != 0) throw failure(file);
  } catch (...) {
    unlink(temporary.c_str());
    throw;
  }
  Descriptor const folder(file.has_parent_path() ? file.parent_path() : ".",
                          O_RDONLY | O_DIRECTORY);
  if (folder.isOpen()) fsync(folder.value());  // makes the new name last, where that is possible
}

FileLock::FileLock(std::filesystem::path const& file)
    : FileLock(file, std::chrono::milliseconds::max()) {}

FileLock::FileLock(std::filesystem::path const& file, std::chrono::milliseconds limit) {
  makeFolder(file.parent_path());
  Descriptor descriptor(file, O_RDWR | O_CREAT, 0600);
  if (!descriptor.isOpen()) throw failure(file);
  bool const isEndless = limit == std::chrono::milliseconds::max();
  auto const begin = std::chrono::steady_clock::now();
  while (flock(descriptor.value(), isEndless ? LOCK_EX : LOCK_EX | LOCK_NB) != 0) {
    if (errno == EINTR) continue;
    if (errno != EWOULDBLOCK) throw failure(file);
    // The system has no wait for a lock that ends by itself.
    if (std::chrono::steady_clock::now() - begin >= limit)
      throw failure("another program keeps " + file.string(), ETIMEDOUT);
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  descriptor_ = descriptor.release();
}

FileLock::~FileLock() {
  close(descriptor_);
}

}  // namespace vek
