// SPDX-License-Identifier: MIT
#pragma once

namespace vek {

/// Whether the desktop blends windows with what is below them. Asked when there is an application.
[[nodiscard]] bool isComposited();

}  // namespace vek
