// SPDX-License-Identifier: MIT
#include "runtime/RootStore.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "runtime/Report.hpp"

namespace vek {

struct Relay::Subscribers {
  struct Entry {
    std::uint64_t key;
    UniqueFunction<void()> subscriber;
    bool isGone = false;
  };
  /// By ascending key.
  std::vector<Entry> entries;
  std::uint64_t lastKey = 0;
  int firing = 0;

  /// While the others are told, one that goes is only marked: it may be the one that runs.
  void remove(std::uint64_t key) {
    auto const found = std::lower_bound(entries.begin(), entries.end(), key,
                                        [](Entry const& entry, auto k) { return entry.key < k; });
    found->isGone = true;
    if (firing == 0) entries.erase(found);
  }
};

Subscription Relay::subscribe(UniqueFunction<void()> subscriber) {
  if (!subscribers_) subscribers_ = std::make_shared<Subscribers>();
  auto const key = ++subscribers_->lastKey;
  subscribers_->entries.push_back({key, std::move(subscriber)});
  return Subscription([weak = std::weak_ptr(subscribers_), key] {
    if (auto const subscribers = weak.lock()) subscribers->remove(key);
  });
}

void Relay::fire() const {
  if (!subscribers_) return;
  auto const held = subscribers_;
  auto& entries = held->entries;
  ++held->firing;
  // By position and to the length of now: who comes meanwhile is not told yet.
  for (std::size_t i = 0, count = entries.size(); i < count; ++i) {
    if (!entries[i].isGone) entries[i].subscriber();
  }
  --held->firing;
  if (held->firing == 0) std::erase_if(entries, [](auto const& entry) { return entry.isGone; });
}

void reportSendAfterCompletion(std::string const& action, std::string const& origin) {
  report(fmt::format(
      "An action was sent from a completed effect:\n\n  Action:\n    {}\n\n  Effect returned "
      "from:\n    {}\n\nAvoid sending actions using the 'send' argument from 'Effect.run' after "
      "the effect has completed. This can happen if you escape the 'send' argument in an "
      "unstructured context.\n\nTo fix this, make sure that your 'run' closure does not return "
      "until you're done calling 'send'.",
      action, origin));
}

}  // namespace vek
