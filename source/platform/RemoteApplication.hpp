// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>

struct sd_bus_message;

namespace vek {

/// The desktop program as other processes of the user reach it, over the session bus. Each request
/// is false when there is none to be reached, and throws std::runtime_error when there is one and
/// it refuses or does not answer.
class RemoteApplication {
 public:
  enum class Start : std::uint8_t { never, ifNeeded };

  /// Requests from now on may, or may not, start a program that is installed and not running.
  explicit RemoteApplication(Start start) : start_(start) {}

  /// Brings its window to the front.
  [[nodiscard]] bool activate() const;
  [[nodiscard]] bool open(std::string const& url) const;
  /// An action by its name among those of the desktop entry.
  [[nodiscard]] bool activateAction(std::string const& name) const;

 private:
  using Arguments = std::function<int(sd_bus_message*)>;
  [[nodiscard]] bool request(char const* method, Arguments const& append) const;

  Start start_;
};

}  // namespace vek
