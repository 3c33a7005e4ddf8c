// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vek::test {

/// A program that a test runs and talks to. It is killed with this object, and with the thread that
/// started it.
class ChildProcess {
 public:
  /// The first word is the program. Throws std::runtime_error when it is not started.
  explicit ChildProcess(std::vector<std::string> words,
                        std::filesystem::path const& errors = "/dev/null");
  ChildProcess(ChildProcess const&) = delete;
  ChildProcess& operator=(ChildProcess const&) = delete;
  ~ChildProcess();

  /// To its standard input.
  void write(std::string_view text) const;
  void closeInput();
  /// The next line of its standard output, without the end; nothing when none comes in time.
  [[nodiscard]] std::optional<std::string> readLine(
      std::chrono::milliseconds limit = std::chrono::seconds(60));

  [[nodiscard]] pid_t pid() const { return pid_; }
  void signal(int number) const;

  /// Its exit status, or 128 and the number of the signal that ended it; nothing when it does not
  /// end in time.
  [[nodiscard]] std::optional<int> wait(std::chrono::milliseconds limit = std::chrono::seconds(60));

 private:
  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string unread_;
};

}  // namespace vek::test
