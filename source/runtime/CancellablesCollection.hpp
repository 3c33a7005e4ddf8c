// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <typeindex>
#include <unordered_map>

#include "runtime/NavigationIDPath.hpp"
#include "runtime/UniqueFunction.hpp"

namespace vek {

/// Identifies cancellable effects.
struct _CancelID {
  _CancelID(AnyHashable id_, NavigationIDPath path)
      : discriminator(id_.type()), id(std::move(id_)), navigationIDPath(std::move(path)) {}

  std::type_index discriminator;
  AnyHashable id;
  NavigationIDPath navigationIDPath;

  bool operator==(_CancelID const&) const = default;
};

}  // namespace vek

template <>
struct std::hash<vek::_CancelID> {
  std::size_t operator()(vek::_CancelID const& id) const noexcept {
    return id.id.hash() * 31 + id.navigationIDPath.hash();
  }
};

namespace vek {

/// What can be cancelled by id, of the whole process. Any thread may use it.
class CancellablesCollection {
 public:
  using Key = std::uint64_t;

  static CancellablesCollection& shared();

  /// Enters `cancel` under `id`, once for each prefix of its path, so that cancelling on an outer
  /// path reaches it too. The key removes it again.
  Key insert(_CancelID const& id, UniqueFunction<void()> cancel);
  void remove(_CancelID const& id, Key key);

  /// Takes out and then calls everything under `id`.
  void cancel(_CancelID const& id);

  [[nodiscard]] bool isEmpty() const;

 private:
  using Cancellable = std::shared_ptr<UniqueFunction<void()>>;

  mutable std::recursive_mutex lock;
  Key lastKey = 0;
  std::unordered_map<_CancelID, std::map<Key, Cancellable>> storage;
};

}  // namespace vek
