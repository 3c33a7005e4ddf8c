// SPDX-License-Identifier: MIT
#include "runtime/CancellablesCollection.hpp"

#include <utility>

namespace vek {

namespace {

template <class Visit>
void forEachPrefix(_CancelID id, Visit visit) {
  while (true) {
    visit(id);
    if (id.navigationIDPath.ids.empty()) return;
    id.navigationIDPath.ids.pop_back();
  }
}

}  // namespace

CancellablesCollection& CancellablesCollection::shared() {
  static auto& collection = *new CancellablesCollection();
  return collection;
}

CancellablesCollection::Key CancellablesCollection::insert(_CancelID const& id,
                                                           UniqueFunction<void()> cancel) {
  auto const cancellable = std::make_shared<UniqueFunction<void()>>(std::move(cancel));
  std::lock_guard guard(lock);
  auto const key = ++lastKey;
  forEachPrefix(id, [&](_CancelID const& prefix) { storage[prefix].emplace(key, cancellable); });
  return key;
}

void CancellablesCollection::remove(_CancelID const& id, Key key) {
  std::lock_guard guard(lock);
  forEachPrefix(id, [&](_CancelID const& prefix) {
    auto const found = storage.find(prefix);
    if (found == storage.end()) return;
    found->second.erase(key);
    if (found->second.empty()) storage.erase(found);
  });
}

void CancellablesCollection::cancel(_CancelID const& id) {
  std::map<Key, Cancellable> cancelled;
  {
    std::lock_guard guard(lock);
    if (auto const found = storage.find(id); found != storage.end()) {
      cancelled.swap(found->second);
      storage.erase(found);
    }
  }
  // Outside the lock: what is cancelled may enter or remove others.
  for (auto const& [key, cancellable] : cancelled) (*cancellable)();
}

bool CancellablesCollection::isEmpty() const {
  std::lock_guard guard(lock);
  return storage.empty();
}

}  // namespace vek
