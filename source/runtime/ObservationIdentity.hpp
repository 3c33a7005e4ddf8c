// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>

namespace vek {

/// Tells a state record that was changed from one that was replaced: copies carry the identity
/// along, a newly made record has a new one. It plays no part in equality.
class ObservationIdentity {
 public:
  [[nodiscard]] bool isSame(ObservationIdentity const& other) const {
    return value_ == other.value_;
  }
  bool operator==(ObservationIdentity const&) const { return true; }

 private:
  static std::uint64_t next() {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
  }
  std::uint64_t value_ = next();
};

}  // namespace vek
