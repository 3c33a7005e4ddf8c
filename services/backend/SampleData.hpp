// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "records/CustomerDTO.hpp"
#include "runtime/Date.hpp"
#include "services/backend/BackendStore.hpp"

namespace vek::services {

/// What the user of a new folder starts with: a dozen customers, and the briefs about them.
struct SampleData {
  explicit SampleData(Date now);

  std::vector<CustomerDTO> customers;
  std::vector<CustomerBrief> briefs;
};

}  // namespace vek::services
