// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace vek::test {

/// The least that a program can do to stream messages over TLS: one thread that writes what it is
/// handed, in order, and reads what comes.
class MinimalBeastSender {
 public:
  /// Waits until it is connected. Throws when it can't.
  static std::unique_ptr<MinimalBeastSender> connect(int port, std::string const& target,
                                                     std::filesystem::path const& authority);

  MinimalBeastSender() = default;
  MinimalBeastSender(MinimalBeastSender const&) = delete;
  MinimalBeastSender& operator=(MinimalBeastSender const&) = delete;
  /// Closes the connection.
  virtual ~MinimalBeastSender() = default;

  /// Any thread.
  virtual void send(std::string binaryMessage) = 0;
};

}  // namespace vek::test
