// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace vek {

/// The entries of a property list whose values are texts.
using PropertyList = std::map<std::string, std::string>;

/// Reads a property list in its XML form. Nothing when there is no such file, or it is no
/// dictionary of this form; entries of other types are left out.
[[nodiscard]] std::optional<PropertyList> readPropertyList(std::filesystem::path const& file);

}  // namespace vek
