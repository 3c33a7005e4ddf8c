// SPDX-License-Identifier: MIT
#pragma once

namespace vek {

/// Runs the desktop program until it is told to terminate, and gives its exit status. Once, on the
/// main thread.
int applicationMain(int argumentCount, char** arguments);

/// Asks the running program to end. Main thread.
void terminate();

}  // namespace vek
