// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/HTTPClient.hpp"

namespace vek {

/// The request as a command line that sends it again. It holds the bearer token: for the log at
/// debug level and nowhere else.
[[nodiscard]] std::string curlForm(HTTPRequest const& request);

}  // namespace vek
