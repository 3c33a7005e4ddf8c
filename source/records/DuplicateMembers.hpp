// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include <boost/json/object.hpp>

namespace vek {

/// Whether `text`, from which `object` was read, has two members of one name outermost: they could
/// mean one thing here and another to who signed them.
[[nodiscard]] bool hasDuplicateMembers(boost::json::object const& object, std::string_view text);

}  // namespace vek
