// SPDX-License-Identifier: MIT
#include "platform/NotificationCenter.hpp"

#include <utility>

namespace vek {

NotificationCenter& NotificationCenter::defaultCenter() {
  static auto& center = *new NotificationCenter;
  return center;
}

void NotificationCenter::addObserver(void const* observer, std::string_view name, Block block) {
  removeObserver(observer, name);
  std::lock_guard lock(mutex_);
  observations_.push_back({observer, std::string(name), std::move(block)});
}

void NotificationCenter::removeObserver(void const* observer, std::string_view name) {
  std::lock_guard lock(mutex_);
  std::erase_if(observations_, [&](Observation const& observation) {
    return observation.observer == observer && observation.name == name;
  });
}

void NotificationCenter::post(std::string_view name) {
  std::vector<Block> blocks;
  {
    std::lock_guard lock(mutex_);
    for (auto const& observation : observations_) {
      if (observation.name == name) blocks.push_back(observation.block);
    }
  }
  // Outside the lock: a block may add or remove observers.
  Notification const notification{std::string(name)};
  for (auto const& block : blocks) block(notification);
}

}  // namespace vek
