// SPDX-License-Identifier: MIT
#include "records/Customer.hpp"

#include "records/CustomerDTO.hpp"

namespace vek {

Customer Customer::from(CustomerDTO const& customer) {
  return {customer.id, customer.customerName};
}

}  // namespace vek
