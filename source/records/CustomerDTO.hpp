// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "records/Field.hpp"
#include "records/NoteDTO.hpp"
#include "records/PriorityDTO.hpp"
#include "runtime/UUID.hpp"

namespace vek {

/// One customer, identified by `id`.
struct CustomerDTO {
  std::string customerName = {};
  UUID id = {};
  std::string agentStatus = {};
  std::string lastEventDate = {};
  std::vector<std::string> dataCategories = {};
  std::optional<PriorityDTO> priority = {};
  std::vector<NoteDTO> notes = {};
  std::string domain = {};

  static constexpr auto fields() {
    return std::tuple{Field{"customer_name", &CustomerDTO::customerName},
                      Field{"customer_id", &CustomerDTO::id},
                      Field{"agent_status", &CustomerDTO::agentStatus},
                      Field{"last_event_date", &CustomerDTO::lastEventDate},
                      Field{"data_categories", &CustomerDTO::dataCategories},
                      Field{"priority", &CustomerDTO::priority},
                      Field{"notes", &CustomerDTO::notes},
                      Field{"domain", &CustomerDTO::domain}};
  }

  bool operator==(CustomerDTO const&) const = default;
};

}  // namespace vek
