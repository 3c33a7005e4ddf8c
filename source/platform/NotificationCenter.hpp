// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace vek {

/// Something that has happened, told to all who observe its name.
struct Notification {
  std::string name;
};

/// Hands notifications to their observers. Any thread may call any operation.
class NotificationCenter {
 public:
  using Block = std::function<void(Notification const&)>;

  /// The one of this process, never released.
  static NotificationCenter& defaultCenter();

  /// From now on `block` runs for each notification of this name, whoever posts it, on the thread
  /// that posts it. An observer that is added again takes the place of its earlier self.
  void addObserver(void const* observer, std::string_view name, Block block);
  /// A notification that is just being posted may still reach the block once.
  void removeObserver(void const* observer, std::string_view name);

  void post(std::string_view name);

 private:
  struct Observation {
    void const* observer;
    std::string name;
    Block block;
  };

  std::mutex mutex_;
  std::vector<Observation> observations_;
};

}  // namespace vek
