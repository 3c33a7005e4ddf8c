// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vek {

/// Whether this process is on a desktop, where a browser can show itself.
[[nodiscard]] bool hasDesktop();

/// Has the desktop show a page in the user's browser, and returns soon. Throws std::runtime_error
/// when it has nothing to show pages with.
void openInBrowser(std::string const& url);

}  // namespace vek
