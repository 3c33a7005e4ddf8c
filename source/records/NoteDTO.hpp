// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <tuple>

#include "records/Field.hpp"

namespace vek {

/// A note about a customer; part of `CustomerDTO`. Its identifiers are any text.
struct NoteDTO {
  std::string name = {};
  std::string customerId = {};
  std::string artifactType = {};
  std::string artifactId = {};
  std::string documentPath = {};
  std::string createdOnStr = {};
  std::string lastModifiedOnStr = {};
  std::string publicId = {};
  std::string vekOrgId = {};
  std::string vekUserId = {};

  static constexpr auto fields() {
    return std::tuple{Field{"name", &NoteDTO::name},
                      Field{"customer_id", &NoteDTO::customerId},
                      Field{"artifact_type", &NoteDTO::artifactType},
                      Field{"artifact_id", &NoteDTO::artifactId},
                      Field{"document_path", &NoteDTO::documentPath},
                      Field{"created_on_str", &NoteDTO::createdOnStr},
                      Field{"last_modified_on_str", &NoteDTO::lastModifiedOnStr},
                      Field{"public_id", &NoteDTO::publicId},
                      Field{"vek_org_id", &NoteDTO::vekOrgId},
                      Field{"vek_user_id", &NoteDTO::vekUserId}};
  }

  bool operator==(NoteDTO const&) const = default;
};

}  // namespace vek
