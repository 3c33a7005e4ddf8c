// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>

namespace vek {

/// Writes a warning to the log of the process. It never stops the program or changes state.
void report(std::string_view warning);

/// Who writes the warnings; standard error until somebody is named. Called once, at the start, or
/// by tests. May be called on any thread.
void setReportHandler(std::function<void(std::string_view)> handler);

}  // namespace vek
