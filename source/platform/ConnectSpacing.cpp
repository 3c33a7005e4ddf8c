// SPDX-License-Identifier: MIT
#include "platform/ConnectSpacing.hpp"

#include <algorithm>

namespace vek {

std::optional<ConnectSpacing::Duration> ConnectSpacing::begin(std::string const& host, Time now) {
  auto const [entry, isFirst] = hosts_.try_emplace(host, Host{.begun = now});
  auto& [begun, pause] = entry->second;
  if (!isFirst && now < begun + pause) return begun + pause - now;
  begun = now;
  return std::nullopt;
}

void ConnectSpacing::failed(std::string const& host) {
  auto& pause = hosts_[host].pause;
  pause = std::min<Duration>(pause * 2, longestPause);
}

void ConnectSpacing::proved(std::string const& host) {
  hosts_[host].pause = shortestPause;
}

}  // namespace vek
