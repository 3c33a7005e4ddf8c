// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/TemporaryFolder.hpp"

namespace vek::test {

/// What `vekctl` finds around it: a deployment, the settings of a user of its own, and no session
/// bus and sound server but those that `environment` names.
struct VekctlSurroundings {
  VekctlSurroundings();

  [[nodiscard]] std::filesystem::path dataHome() const { return folder / "data"; }

  TemporaryFolder folder;
  /// The keys of the deployment file.
  std::map<std::string, std::string> deployment;
  /// Variables beside those of the test.
  std::map<std::string, std::string> environment;
  /// What it reads from its standard input.
  std::filesystem::path input = "/dev/null";
};

/// A run of the built `vekctl`. It ends with this object, and with the thread that started it.
class VekctlRun {
 public:
  enum class Messages : std::uint8_t { toPipe, toTerminal };

  /// `columns`: how wide the terminal is that takes the messages, where one does.
  VekctlRun(VekctlSurroundings const& surroundings, std::vector<std::string> arguments,
            Messages messages = Messages::toPipe, unsigned short columns = 80);
  VekctlRun(VekctlRun const&) = delete;
  VekctlRun& operator=(VekctlRun const&) = delete;
  ~VekctlRun();

  /// What it wrote to standard output and to standard error so far.
  [[nodiscard]] std::string const& output() const { return channels_[0].text; }
  [[nodiscard]] std::string const& messages() const { return channels_[1].text; }
  [[nodiscard]] std::vector<std::string> lines() const;

  /// Whether a text comes in time.
  [[nodiscard]] bool waitForOutput(std::string_view text);
  [[nodiscard]] bool waitForMessage(std::string_view text);

  /// Reads no more of its standard output, as `head` does.
  void closeOutput();

  void signal(int number) const;

  /// Its exit status, or 128 and the number of the signal that ended it; -1 when it does not end in
  /// time.
  int wait();

 private:
  struct Channel {
    int file = -1;
    std::string text = {};
  };

  template <class Predicate>
  bool readUntil(Predicate isEnough);

  std::array<Channel, 2> channels_;
  pid_t pid_ = -1;
};

/// A run from its start to its end.
struct VekctlResult {
  int status;
  std::string output;
  std::string messages;
};
[[nodiscard]] VekctlResult runVekctl(VekctlSurroundings const& surroundings,
                                     std::vector<std::string> arguments);

}  // namespace vek::test
