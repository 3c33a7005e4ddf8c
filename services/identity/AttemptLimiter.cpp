// SPDX-License-Identifier: MIT
#include "services/identity/AttemptLimiter.hpp"

#include <algorithm>

namespace vek::services {

namespace {

using std::chrono::seconds;

constexpr seconds longestWait{300};
constexpr int longestDoubling = 9;
constexpr std::chrono::hours forgiveness{1};

}  // namespace

seconds AttemptLimiter::wait(std::string const& key, Time now) const {
  auto const found = failures_.find(key);
  if (found == failures_.end() || found->second.count < freeFailures_) return seconds(0);
  int const doublings = std::min(found->second.count - freeFailures_, longestDoubling);
  auto const end = found->second.last + std::min(seconds(1 << doublings), longestWait);
  return std::max(seconds(0), std::chrono::ceil<seconds>(end - now));
}

void AttemptLimiter::failed(std::string const& key, Time now) {
  std::erase_if(failures_,
                [now](auto const& entry) { return now - entry.second.last > forgiveness; });
  auto& failures = failures_[key];
  ++failures.count;
  failures.last = now;
}

}  // namespace vek::services
