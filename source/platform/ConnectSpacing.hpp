// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace vek {

/// Keeps the connections to one host apart, so that a server that ends each at once is not asked
/// again without pause. The pause grows while they fail, until one has lasted. Callers see to it
/// that one thread uses it at a time.
class ConnectSpacing {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using Duration = std::chrono::steady_clock::duration;

  static constexpr std::chrono::milliseconds shortestPause{250};
  static constexpr std::chrono::milliseconds longestPause{5000};
  /// How long a connection has to last to be a good one.
  static constexpr std::chrono::milliseconds proof = longestPause;

  /// Nothing when a connection to `host` may begin, which then counts as begun; or else how long to
  /// wait before asking again.
  [[nodiscard]] std::optional<Duration> begin(std::string const& host, Time now);

  /// A connection was not to be had, or the other side has ended it early.
  void failed(std::string const& host);
  /// A connection has lasted.
  void proved(std::string const& host);

 private:
  struct Host {
    Time begun;
    Duration pause = shortestPause;
  };

  std::map<std::string, Host> hosts_;
};

}  // namespace vek
