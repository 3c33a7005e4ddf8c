// SPDX-License-Identifier: MIT
#pragma once

#include <any>
#include <concepts>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <typeindex>
#include <utility>

namespace vek {

/// Which of a key's values stands in when nobody has set one.
enum class DependencyContext : std::uint8_t { live, preview, test };

/// A key names the type of a value and how to make one, with `liveValue` and, where they differ
/// from it, `previewValue` and `testValue`. Values are made under the lock of `CachedValues`:
/// making one must not wait for another thread.
template <class Key>
concept DependencyKey = requires {
  typename Key::Value;
  // By address, so that a header may leave the value's type incomplete.
  { &Key::liveValue } -> std::same_as<typename Key::Value (*)()>;
};

/// The accessor of a key: `values[apiClient]`, `values.set(apiClient, …)`.
template <DependencyKey Key>
struct DependencyKeyPath {};

/// The values computed on demand, each once and shared by all readers.
class CachedValues {
 public:
  struct CacheKey {
    std::type_index id;
    DependencyContext context;
    auto operator<=>(CacheKey const&) const = default;
  };

  /// The one of this process.
  static std::shared_ptr<CachedValues> const& shared();

  /// The value cached under `key`, or else what `compute` makes.
  template <class Value, class Compute>
  std::shared_ptr<Value const> value(CacheKey key, Compute compute) {
    std::lock_guard guard(lock);
    if (auto found = cached.find(key); found != cached.end()) {
      if (auto* value = std::any_cast<std::shared_ptr<Value const>>(&found->second)) return *value;
    }
    auto value = std::make_shared<Value const>(compute());
    cached.insert_or_assign(key, std::any(value));
    return value;
  }

 private:
  /// Recursive, because making a value reads other keys.
  std::recursive_mutex lock;
  std::map<CacheKey, std::any> cached;
};

/// The map from keys to values that a piece of work sees. A value; copies are cheap.
class DependencyValues {
 public:
  class Continuation;

  /// The values of the work that runs on this thread.
  static DependencyValues current();

  template <DependencyKey Key>
  [[nodiscard]] std::shared_ptr<typename Key::Value const> operator[](
      DependencyKeyPath<Key>) const {
    if (auto value = stored<typename Key::Value>(typeid(Key))) return value;
    auto const inForce = context();
    return cachedValues->value<typename Key::Value>({typeid(Key), inForce},
                                                    [inForce] { return computed<Key>(inForce); });
  }

  template <DependencyKey Key>
  void set(DependencyKeyPath<Key>, typename Key::Value value) {
    setErased(typeid(Key), std::make_shared<typename Key::Value const>(std::move(value)));
  }

  /// Stores a value of any type under a key; one of another type than the key's is not found.
  void setErased(std::type_index key, std::any value);

  [[nodiscard]] DependencyContext context() const;
  void setContext(DependencyContext context);

  /// These values, with those that `other` has set put over them.
  [[nodiscard]] DependencyValues merging(DependencyValues const& other) const;

 private:
  using Storage = std::map<std::type_index, std::any>;

  template <class Value>
  std::shared_ptr<Value const> stored(std::type_index key) const {
    if (!storage) return nullptr;
    auto const found = storage->find(key);
    if (found == storage->end()) return nullptr;
    auto const* value = std::any_cast<std::shared_ptr<Value const>>(&found->second);
    return value ? *value : nullptr;
  }

  template <DependencyKey Key>
  static typename Key::Value computed(DependencyContext context) {
    if (context == DependencyContext::test) {
      if constexpr (requires { Key::testValue(); }) return Key::testValue();
    }
    if (context != DependencyContext::live) {
      if constexpr (requires { Key::previewValue(); }) return Key::previewValue();
    }
    return Key::liveValue();
  }

  std::shared_ptr<Storage const> storage;
  std::shared_ptr<CachedValues> cachedValues = CachedValues::shared();
};

}  // namespace vek
