// SPDX-License-Identifier: MIT
#include "runtime/DependencyValues.hpp"

#include "runtime/Environment.hpp"

namespace vek {

namespace {
struct DependencyContextKey {};
}  // namespace

std::shared_ptr<CachedValues> const& CachedValues::shared() {
  // Never released: work that ends with the process may still read it.
  static auto const& values = *new std::shared_ptr<CachedValues>(std::make_shared<CachedValues>());
  return values;
}

DependencyValues DependencyValues::current() {
  auto const* environment = Environment::current();
  return environment ? environment->dependencies : DependencyValues();
}

void DependencyValues::setErased(std::type_index key, std::any value) {
  auto changed = storage ? std::make_shared<Storage>(*storage) : std::make_shared<Storage>();
  changed->insert_or_assign(key, std::move(value));
  storage = std::move(changed);
}

DependencyContext DependencyValues::context() const {
  auto const value = stored<DependencyContext>(typeid(DependencyContextKey));
  return value ? *value : DependencyContext::live;
}

void DependencyValues::setContext(DependencyContext context) {
  setErased(typeid(DependencyContextKey), std::make_shared<DependencyContext const>(context));
}

DependencyValues DependencyValues::merging(DependencyValues const& other) const {
  if (!other.storage) return *this;
  if (!storage) return other;
  auto merged = std::make_shared<Storage>(*other.storage);
  merged->insert(storage->begin(), storage->end());
  auto result = *this;
  result.storage = std::move(merged);
  return result;
}

}  // namespace vek
