// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vek {

/// What the redirect at the end of a login says, by name.
using CallbackValues = std::map<std::string, std::string>;

/// The values in the query and the fragment of a redirect; the query's win, and of two of one name
/// in either the later one. Nothing when `url` is no URL.
[[nodiscard]] std::optional<CallbackValues> callbackValues(std::string_view url);

}  // namespace vek
