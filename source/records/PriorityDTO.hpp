// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "records/Field.hpp"

namespace vek {

/// How much a customer matters now; part of `CustomerDTO`.
struct PriorityDTO {
  std::string label = {};
  std::int64_t value = 0;
  std::string createdOnStr = {};
  std::string lastModifiedOnStr = {};
  std::string publicId = {};
  std::string vekOrgId = {};
  std::string vekUserId = {};

  static constexpr auto fields() {
    return std::tuple{Field{"label", &PriorityDTO::label},
                      Field{"value", &PriorityDTO::value},
                      Field{"created_on_str", &PriorityDTO::createdOnStr},
                      Field{"last_modified_on_str", &PriorityDTO::lastModifiedOnStr},
                      Field{"public_id", &PriorityDTO::publicId},
                      Field{"vek_org_id", &PriorityDTO::vekOrgId},
                      Field{"vek_user_id", &PriorityDTO::vekUserId}};
  }

  bool operator==(PriorityDTO const&) const = default;
};

}  // namespace vek
