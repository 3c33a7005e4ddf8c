// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "records/Hashing.hpp"
#include "runtime/UUID.hpp"

namespace vek {

struct CustomerDTO;

/// A customer, identified by `id`. Neither field changes.
struct Customer {
  UUID id;
  std::string name;

  static Customer from(CustomerDTO const& customer);

  bool operator==(Customer const&) const = default;
};

}  // namespace vek

template <>
struct std::hash<vek::Customer> {
  std::size_t operator()(vek::Customer const& customer) const {
    return vek::combinedHash(customer.id, customer.name);
  }
};
